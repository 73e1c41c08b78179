#include "parsers.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace Parsers;

constexpr std::array<Parser, 15> parsers {{{"date-time texts", dateTime},
                                           {"leading numbers", leadingNumber},
                                           {"column keys", columnKey},
                                           {"hours of a limit", hours},
                                           {"days as arguments", dayArgument},
                                           {"message lines", messageLine},
                                           {"remote records", remoteRecord},
                                           {"cars lists", carsList},
                                           {"message logs", messageLog},
                                           {"dragged items", draggedItems},
                                           {"times of a request", requestTime},
                                           {"numbers of a path", requestNumber},
                                           {"bodies of a request", requestBody},
                                           {"addresses to listen on", endpoint},
                                           {"addresses of clients", clientAddress}}};

std::array<long long, parsers.size()> executions;

void printExecutions()
{
    for (size_t i = 0; i < parsers.size(); ++i)
        std::fprintf(stderr, "executions: %10lld  %s\n", executions.at(i), parsers.at(i).name);
}

} // namespace

void Parsers::require(bool condition, const char *expected, const QByteArray &input)
{
    if (condition)
        return;
    std::fprintf(stderr, "expected: %s\ninput: %s\n", expected, input.toPercentEncoding(" ").constData());
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    std::atexit(printExecutions);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ByteReader bytes(data, size);
    const auto chosen = size_t(bytes.below(int(parsers.size())));
    ++executions.at(chosen);
    parsers.at(chosen).run(bytes);
    return 0;
}
