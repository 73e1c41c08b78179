#include "host/sample/samplecatalogue.h"

namespace {
constexpr int halfHour = 1800;
} // namespace

QVector<SampleCatalogue::Operation> SampleCatalogue::operations(int count)
{
    const QVector<Operation> all = {
        {QStringLiteral("Замена масла"), 10 * halfHour, 0, 0},
        {QStringLiteral("Смазка цепи"), 3 * halfHour, 12, 0},
        {QStringLiteral("Замена цепи и звёзд"), 0, 0, 450},
        {QStringLiteral("Проверка тормозов"), 0, 15, 0},
        {QStringLiteral("Замена колодок"), 8 * halfHour, 0, 400},
        {QStringLiteral("Замена шин"), 0, 0, 500},
        {QStringLiteral("Регулировка схода"), 6 * halfHour, 25, 0},
        {QStringLiteral("Протяжка болтов"), 2 * halfHour, 10, 120},
        {QStringLiteral("Замена свечи"), 8 * halfHour, 0, 0},
        {QStringLiteral("Чистка карбюратора"), 6 * halfHour, 0, 300},
        {QStringLiteral("Замена фильтра"), 0, 30, 0},
        {QStringLiteral("Осмотр рамы"), 10 * halfHour, 40, 400},
    };
    return all.mid(0, count);
}

QVector<SampleCatalogue::Model> SampleCatalogue::models()
{
    return {
        {QStringLiteral("Вихрь"), 1.0, 39000},  {QStringLiteral("Стриж"), 1.1, 42000},
        {QStringLiteral("Юниор"), 1.3, 48000},  {QStringLiteral("Дуэт"), 0.9, 46000},
        {QStringLiteral("Молния"), 1.5, 37000},
    };
}

QVector<SampleCatalogue::Person> SampleCatalogue::people()
{
    return {
        {QStringLiteral("Иванов"), QStringLiteral("Пётр"), QStringLiteral("Сергеевич")},
        {QStringLiteral("Кузнецов"), QStringLiteral("Алексей"), QStringLiteral("Викторович")},
        {QStringLiteral("Смирнова"), QStringLiteral("Ольга"), QStringLiteral("Андреевна")},
        {QStringLiteral("Орлов"), QStringLiteral("Денис"), QStringLiteral("Игоревич")},
        {QStringLiteral("Фёдоров"), QStringLiteral("Максим"), QString()},
        {QStringLiteral("Соколов"), QStringLiteral("Артём"), QStringLiteral("Павлович")},
        {QStringLiteral("Лебедева"), QStringLiteral("Марина"), QStringLiteral("Юрьевна")},
        {QStringLiteral("Гусев"), QStringLiteral("Роман"), QStringLiteral("Олегович")},
        {QStringLiteral("Ким"), QStringLiteral("Тимур"), QString()},
        {QStringLiteral("Беляев"), QStringLiteral("Николай"), QStringLiteral("Дмитриевич")},
    };
}

QVector<QString> SampleCatalogue::complaints()
{
    return {
        QStringLiteral("Тянет влево при торможении"), QStringLiteral("Не держит холостые обороты"),
        QStringLiteral("Стук в задней оси"),          QStringLiteral("Проваливается педаль тормоза"),
        QStringLiteral("Плохо заводится на горячую"), QStringLiteral("Люфт рулевого колеса"),
    };
}

QVector<QString> SampleCatalogue::remarks()
{
    return {
        QString(),
        QString(),
        QString(),
        QStringLiteral("по регламенту"),
        QStringLiteral("заменено досрочно"),
        QStringLiteral("износ в норме"),
        QStringLiteral("проверить через неделю"),
    };
}
