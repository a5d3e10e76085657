#include <malloc.h>

#include "app/program.h"
#include "lib/report/process.h"
#include "lib/system/stream.h"

int main(int argc, char *argv[]) {
    FILE_open_standard_streams();
    // A plot takes and frees a few megabytes many times: they stay with the process instead of being mapped
    // anew.
    constexpr int kKeep = 32 << 20;
    mallopt(M_MMAP_THRESHOLD, kKeep);
    mallopt(M_TRIM_THRESHOLD, kKeep);
    VYX_exit(run_program(argc, argv));
}
