#include <malloc.h>

#include "app/program.h"

int main(int argc, char *argv[]) {
    // A plot takes and frees a few megabytes many times: they stay with the process instead of being mapped
    // anew.
    constexpr int kKeep = 32 << 20;
    mallopt(M_MMAP_THRESHOLD, kKeep);
    mallopt(M_TRIM_THRESHOLD, kKeep);
    return run_program(argc, argv);
}
