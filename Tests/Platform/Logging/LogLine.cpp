// Writes one entry to the unified log: LogLine subsystem category text

#include "Platform/Logging/os_log.h"

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    qrv::os_log_with_type(qrv::os_log_create(argv[1], argv[2]), qrv::OS_LOG_TYPE_ERROR, argv[3]);
    return 0;
}
