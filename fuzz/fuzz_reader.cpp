// SPDX-License-Identifier: MIT
// Feeds the measurement file reader with anything. Whatever it makes of it must be finite, because one
// infinite length would spoil the statistics of the whole set.
#include "ballbardata.h"
#include "report.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const int descriptor = memfd_create("set", 0);
    if (descriptor < 0 || write(descriptor, bytes, size) != static_cast<ssize_t>(size))
        std::abort();
    TBallBarData data;
    if (data.Load_Data(QStringLiteral("/proc/self/fd/%1").arg(descriptor))) {
        if (!std::isfinite(data.Minimum_Length()) || !std::isfinite(data.Maximum_Length()))
            std::abort();
        Build_Report(data, 0.01, 0.005);
    }
    close(descriptor);
    return 0;
}
