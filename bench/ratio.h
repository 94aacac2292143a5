// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

/// Seconds that one call of `work` takes.
inline double Seconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The best times of `ours` and `reference`, run in turns so that both meet the same disturbances.
struct TComparison
{
    double ours{1e300};
    double reference{1e300};

    TComparison(int rounds, const std::function<void()>& our_work,
                const std::function<void()>& reference_work)
    {
        for (int i = 0; i < rounds; ++i) {
            reference = std::min(reference, Seconds(reference_work));
            ours = std::min(ours, Seconds(our_work));
        }
    }
};

/// The heading of a table: the names, with units, of both figures, and in words what ours is held against.
inline void Print_Heading(const char* ours, const char* reference, const char* against = "")
{
    if (*against != '\0')
        std::printf("Held against %s.\n", against);
    std::printf("%-44s %14s %14s %8s  %s\n", "", ours, reference, "ratio", "goal");
}

/// One line of a bench: two figures of the same unit, their ratio and the goal for it.
inline void Print_Ratio(const char* name, double ours, double reference, double goal)
{
    std::printf("%-44s %14.3f %14.3f %8.2f  %.2f%s\n", name, ours, reference, ours / reference, goal,
                ours / reference <= goal ? "" : "  MISSED");
    std::fflush(stdout);
}
