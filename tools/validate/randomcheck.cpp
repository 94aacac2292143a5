// SPDX-License-Identifier: MIT
// Random sets, fifty at a time: everything that is shown of them when they are imported, what the database,
// the backup and the CSV file hold of them, and everything that is shown of them when they come back from a
// restore.
#include "checks.h"
#include "displaycheck.h"
#include "program.h"
#include "randomsets.h"

#include <algorithm>

namespace mp = boost::multiprecision;

namespace
{

constexpr int BATCH = 50; // sets in one database

struct TSample
{
    std::string path;
    TExactSet exact;
    TExactTolerance tolerance;
    std::string name;
};

/// The largest changes that storing has made, mm.
struct TChanges
{
    TExact length{0};
    TExact range{0};
    TExact mean{0};
    TExact median{0};
    TExact deviation{0};
};

TSample Next_Sample(const TPrivateHome& home, TRandomSets* sets, int number)
{
    const TRandomSet set = sets->Next();
    TSample sample;
    sample.path = home.Write("set_" + std::to_string(number % BATCH) + ".dat", set.file);
    sample.exact = Read_Measurement(set.file);
    sample.exact.on_grid = set.on_grid;
    sample.tolerance = set.tolerance;
    sample.name = "set " + std::to_string(number + 1);
    return sample;
}

void Check_Imported(const std::vector<TSample>& samples, TTally* tally)
{
    TWindow window;
    for (const TSample& sample : samples) {
        window.Import(sample.path);
        window.Set_Tolerance(sample.tolerance);
        Check_Display(&window, sample.exact, sample.tolerance, sample.name, tally);
        Check_Bars(sample.path, sample.exact, sample.tolerance, sample.name, tally);
    }
}

std::vector<TExactSet> Exact_Sets(const std::vector<TSample>& samples)
{
    std::vector<TExactSet> sets;
    sets.reserve(samples.size());
    for (const TSample& sample : samples)
        sets.push_back(sample.exact);
    return sets;
}

// Tells the sets as they were stored.
std::vector<TExactSet> Check_Stored(const TPrivateHome& home, const std::vector<TSample>& samples,
                                    TTally* tally)
{
    const std::vector<TExactSet> saved = Exact_Sets(samples);
    home.Remove_Database();
    TStore store(home);
    int number = 0;
    for (const TSample& sample : samples) {
        tally->Set_Place(sample.name);
        tally->Decision("All there: sets in the database", true, false, store.Save(sample.path, number++));
    }
    const std::string backup = store.Written_Backup();
    std::vector<TExactSet> stored = Read_Backup(backup);
    Check_Stored_Numbers(stored, saved, tally);
    Check_Summaries(&store, stored, saved, tally);

    store.Restore_Into_New_Database();
    Check_Summaries(&store, stored, stored, tally);
    tally->Set_Place("backup of the restored database");
    tally->Decision("The same: backup after a restore", true, false, store.Written_Backup() == backup);
    return stored;
}

void Check_Restored(const std::vector<TSample>& samples, const std::vector<TExactSet>& stored, TTally* tally)
{
    TWindow window;
    for (size_t i = 0; i < std::min(samples.size(), stored.size()); ++i) {
        window.Load(static_cast<int>(i));
        window.Set_Tolerance(samples[i].tolerance);
        Check_Display(&window, stored[i], samples[i].tolerance, samples[i].name + ", restored", tally);
    }
}

void Note(TExact* largest, const TExact& before, const TExact& after)
{
    *largest = (std::max)(*largest, TExact(mp::abs(after - before)));
}

void Note_Changes(const std::vector<TSample>& samples, const std::vector<TExactSet>& stored,
                  TChanges* changes)
{
    for (size_t i = 0; i < std::min(samples.size(), stored.size()); ++i) {
        const TExactSet& before = samples[i].exact;
        for (size_t k = 0; k < std::min(before.lengths.size(), stored[i].lengths.size()); ++k)
            Note(&changes->length, before.lengths[k], stored[i].lengths[k]);
        Note(&changes->range, before.range, stored[i].range);
        Note(&changes->mean, before.mean, stored[i].mean);
        Note(&changes->median, before.median, stored[i].median);
        Note(&changes->deviation, before.deviation, stored[i].deviation);
    }
}

std::string Changes_Table(const TChanges& changes)
{
    const auto row = [](const char* quantity, const TExact& change) {
        return Table_Row({quantity, Printed(change, 7)});
    };
    return "\nThe database keeps 5 decimals of each coordinate, so that stored sets differ a little from "
           "their files. "
           "The largest\ndifferences met here:\n\n| Quantity | Difference, mm |\n|---|--:|\n" +
           row("length of a position", changes.length) + row("range", changes.range) +
           row("mean", changes.mean) + row("median", changes.median) +
           row("standard deviation", changes.deviation);
}

const char* const DEMAND =
    "every number that the program shows of random measurements is, to its last decimal, what the formula "
    "gives with\n"
    "50 digits: in the report, the histogram, the panels, the summary table and the CSV file, when the "
    "measurement is\n"
    "imported and again when it comes back from database, backup and restore.\n\n"
    "A number so near to halfway between two printed ones that a computer's numbers cannot tell (within\n"
    "0.0000000001 mm) may be rounded to either; such ties are counted. They are no rarity: of numbers with 5 "
    "decimals,\n"
    "as the database keeps them, one in ten ends in 5 and is a tie at 4 decimals. The same goes for a length "
    "on the\n"
    "edge of a band or bin. One measurement in five has lengths that a computer holds without rounding, many "
    "of them\n"
    "exactly on an edge; there every such decision has to be the right one.";

} // namespace

TCheck Check_Random_Sets(const TPrivateHome& home, unsigned long long seed, int count, TTally* tally)
{
    TRandomSets sets(seed);
    TChanges changes;
    int positions = 0;
    for (int made = 0; made < count;) {
        std::vector<TSample> samples;
        for (const int end = std::min(count, made + BATCH); made < end; ++made) {
            samples.push_back(Next_Sample(home, &sets, made));
            positions += static_cast<int>(samples.back().exact.positions.size());
        }
        Check_Imported(samples, tally);
        const std::vector<TExactSet> stored = Check_Stored(home, samples, tally);
        Check_Restored(samples, stored, tally);
        Note_Changes(samples, stored, &changes);
    }
    const TTally::TCount sum = tally->Sum();
    TCheck check;
    check.title = "Random measurements";
    check.demand = DEMAND;
    check.found = Grouped(count) + " sets with " + Grouped(positions) + " positions, " +
                  Grouped(sum.compared) + " comparisons: " + Grouped(sum.wrong) + " wrong, " +
                  Grouped(sum.ties) + " ties";
    check.passed = sum.wrong == 0 && sum.compared > 0;
    check.details = Tables_Of(*tally) + Changes_Table(changes);
    check.fault = First_Fault(*tally);
    return check;
}
