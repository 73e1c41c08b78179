#include "tests/mutation/mutant.h"

#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int chosenMutant()
{
    const char *number = std::getenv("GARAGE_MUTANT");
    return number ? std::atoi(number) : 0;
}

/// One byte for each mutant, shared by all processes of a test. A crash does not lose it.
volatile unsigned char *reachedMutants()
{
    const char *path = std::getenv("GARAGE_MUTANTS_REACHED");
    const int file = path ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file == -1)
        return nullptr;
    struct stat status = {};
    void *bytes = MAP_FAILED;
    if (fstat(file, &status) == 0 && status.st_size > 0)
        bytes = mmap(nullptr, size_t(status.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return bytes == MAP_FAILED ? nullptr : static_cast<unsigned char *>(bytes);
}

} // namespace

bool garageMutant(int number)
{
    static const int chosen = chosenMutant();
    static volatile unsigned char *const reached = reachedMutants();
    if (reached)
        reached[number] = 1;
    return number == chosen;
}
