#include "garagectl/doctor/examination.h"

#include "garagectl/database/fileproof.h"
#include "garagectl/database/readonlyfile.h"
#include "garagectl/doctor/catalogue.h"
#include "garagectl/doctor/costcheck.h"
#include "garagectl/doctor/lockholders.h"
#include "garagectl/doctor/rowcheck.h"
#include "garagectl/doctor/schemacheck.h"
#include "garagectl/doctor/storage.h"
#include "garagectl/doctor/timecheck.h"
#include "garagectl/output/progress.h"
#include "garagectl/wording.h"

#include <algorithm>

namespace {

/// The id of the finding that a failed reading is; null: none.
const char *idOf(ReadOnlyFile::Problem problem)
{
    switch (problem) {
    case ReadOnlyFile::Damaged:
        return "damaged";
    case ReadOnlyFile::NotADatabase:
        return "not-a-database";
    case ReadOnlyFile::Locked:
        return "locked";
    case ReadOnlyFile::UnfinishedWrite:
        return "unfinished-write";
    default:
        return nullptr;
    }
}

class Examination final
{
public:
    Examination(const QString &path, Progress &progress) : m_path(path), m_progress(progress) { }

    Findings run();

private:
    using Check = std::function<Findings(const GarageDatabase &)>;

    void examineContent();
    void examineTimes();
    void examineRows();
    void read(const Check &check);
    template<typename Function> void attempt(Function function);
    void add(const Findings &findings);
    void addFailure(const ReadOnlyFile::ReadFailure &failure);
    bool has(const char *id) const;

    const QString m_path;
    Progress &m_progress;
    Findings m_findings;
    bool m_isReadable = true;
};

Findings Examination::run()
{
    const Storage storage = StorageCheck::look(m_path);
    add(StorageCheck::judge(storage));
    if (StorageCheck::isDatabase(storage.kind)) {
        add(LockHolders::check(m_path));
        examineContent();
    }
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    return m_findings;
}

void Examination::examineContent()
{
    m_progress.setTask(text("reading the tables", "читаются таблицы"));
    read(checkSchema);
    m_progress.setTask(text("checking the file's structure", "проверяется устройство файла"));
    read([](const GarageDatabase &database) -> Findings {
        const QStringList faults = FileProof::faults(database);
        if (faults.isEmpty())
            return {};
        return {DoctorCatalogue::finding("damaged", faults.size(), faults)};
    });
    m_progress.setTask(text("timing the module's statements", "измеряются запросы модуля"));
    attempt([this] { add(checkCost(m_path)); });
    examineTimes();
    examineRows();
}

void Examination::examineTimes()
{
    const QDateTime now = QDateTime::currentDateTime();
    m_progress.setTask(text("reading the times", "читается время кругов и записей"));
    read([&now](const GarageDatabase &database) { return TimeCheck::checkLaps(database, now); });
    read([&now](const GarageDatabase &database) { return TimeCheck::checkRecords(database, now); });
}

void Examination::examineRows()
{
    m_progress.setTask(text("comparing the tables", "сравниваются таблицы"));
    for (const RowCheck::Check &check : RowCheck::all())
        read([&check](const GarageDatabase &database) { return RowCheck::run(database, check); });
}

void Examination::read(const Check &check)
{
    attempt([this, &check] {
        Findings findings;
        ReadOnlyFile::read(m_path, [&](const GarageDatabase &database) { findings = check(database); });
        add(findings);
    });
}

template<typename Function> void Examination::attempt(Function function)
{
    if (!m_isReadable)
        return;
    try {
        function();
    } catch (const ReadOnlyFile::ReadFailure &failure) {
        addFailure(failure);
    }
}

void Examination::add(const Findings &findings)
{
    for (const Finding &finding : findings) {
        if (!has(finding.id.toLatin1().constData()))
            m_findings.append(finding);
    }
}

void Examination::addFailure(const ReadOnlyFile::ReadFailure &failure)
{
    // A check that needs what is missing, which has its own finding.
    const bool isKnown =
        failure.problem == ReadOnlyFile::WrongStatement && (has("table-missing") || has("column-missing"));
    if (isKnown)
        return;
    const char *id = idOf(failure.problem);
    if (!id)
        throw failure;
    m_isReadable = failure.problem == ReadOnlyFile::Damaged;
    add({DoctorCatalogue::finding(id, 1, {failure.message})});
}

bool Examination::has(const char *id) const
{
    return std::any_of(m_findings.cbegin(), m_findings.cend(),
                       [id](const Finding &finding) { return finding.id == QLatin1String(id); });
}

} // namespace

Findings examine(const QString &databasePath, Progress &progress)
{
    return Examination(databasePath, progress).run();
}
