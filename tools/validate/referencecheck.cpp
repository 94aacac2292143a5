// SPDX-License-Identifier: MIT
// The data sets of NIST as ball bars: one sphere at the origin, the other that far away on the x axis.
#include "ballbardata.h"
#include "checks.h"
#include "exactset.h"
#include "program.h"

#include <QFile>

namespace
{

/// A reference set and how many digits of its standard deviation doubles can give: the data themselves are
/// rounded when they are read.
struct TReference
{
    const char* name;
    const char* digits_of_deviation;
};

constexpr TReference REFERENCES[] = {{"Lottery", "14.5"}, {"Mavro", "13.0"},   {"Michelso", "13.7"},
                                     {"NumAcc1", "14.5"}, {"NumAcc2", "14.5"}, {"NumAcc3", "9.4"},
                                     {"NumAcc4", "8.2"}};
const char* const DIGITS_OF_MEAN = "14";

struct TCertified
{
    TExact mean;
    TExact deviation;
    std::string file; ///< as measurement file
};

struct TComputed
{
    double mean;
    double deviation;
};

std::string Last_Word(const std::string& line)
{
    return line.substr(line.rfind(' ') + 1);
}

TCertified Read_Reference(const std::string& name)
{
    TCertified set;
    set.file = "B89.4.1_Data:Version=1:Type=BallBar\n";
    for (const std::string& line : Split(TPrivateHome::Read(":/nist/" + name + ".txt"), '\n')) {
        if (line.rfind("# certified mean", 0) == 0)
            set.mean = Exact(Last_Word(line));
        else if (line.rfind("# certified standard deviation", 0) == 0)
            set.deviation = Exact(Last_Word(line));
        else if (!line.empty() && line.front() != '#')
            set.file += "N,,0,0,0," + line + ",0,0,0,0,0,0,0\n";
    }
    return set;
}

TComputed From_File(const std::string& path)
{
    TBallBarData data;
    data.Load_Data(QString::fromStdString(path));
    return {data.Mean_Length(), data.Stdev_Length()};
}

// As the main window takes a set over from the database window.
TComputed From_Database(TStore* store, int index)
{
    TBallBarData data;
    for (const Types::TBallbar_Item& position : store->Loaded(index))
        data.Add_Ballbar(position);
    data.Update_Stats();
    return {data.Mean_Length(), data.Stdev_Length()};
}

/// The rows of one way, and the first of them that does not pass.
struct TWay
{
    std::string rows;
    std::string fault;
};

void Compare(const char* way, const TReference& reference, const TCertified& certified,
             const TComputed& computed, TWay* result)
{
    const TExact mean = Shared_Digits(TExact(computed.mean), certified.mean);
    const TExact deviation = Shared_Digits(TExact(computed.deviation), certified.deviation);
    const bool passed = mean >= Exact(DIGITS_OF_MEAN) && deviation >= Exact(reference.digits_of_deviation);
    result->rows += Table_Row({reference.name, way, Printed(mean, 1), DIGITS_OF_MEAN, Printed(deviation, 1),
                               reference.digits_of_deviation, Verdict(passed)});
    if (!passed && result->fault.empty())
        result->fault = std::string(reference.name) + " by way of " + way + ": " + Printed(mean, 1) +
                        " and " + Printed(deviation, 1) + " digits. ";
}

/// The three ways.
struct TWays
{
    TWay file;
    TWay database;
    TWay restored;
};

TWays Go_All_Ways(const TPrivateHome& home)
{
    TWays ways;
    home.Remove_Database();
    TStore store(home);
    std::vector<TCertified> sets;
    for (const TReference& reference : REFERENCES) {
        sets.push_back(Read_Reference(reference.name));
        const std::string path = home.Write("reference.dat", sets.back().file);
        const int index = static_cast<int>(sets.size()) - 1;
        store.Save(path, index);
        Compare("file", reference, sets.back(), From_File(path), &ways.file);
        Compare("database", reference, sets.back(), From_Database(&store, index), &ways.database);
    }
    store.Written_Backup();
    store.Restore_Into_New_Database();
    for (size_t i = 0; i < sets.size(); ++i)
        Compare("backup and restore", REFERENCES[i], sets[i], From_Database(&store, static_cast<int>(i)),
                &ways.restored);
    return ways;
}

} // namespace

TCheck Check_Reference_Data(const TPrivateHome& home)
{
    const TWays ways = Go_All_Ways(home);
    TCheck check;
    check.title = "Reference data of NIST";
    check.demand = "mean and standard deviation of the seven univariate *Statistical Reference Datasets* "
                   "share at least as\n"
                   "many digits with the certified values as the numbers of a computer allow; also after "
                   "database, and after\n"
                   "backup and restore.";
    check.fault = ways.file.fault + ways.database.fault + ways.restored.fault;
    check.passed = check.fault.empty();
    check.found = "7 sets on three ways";
    check.details =
        "The digits shared are −log10 of the relative error; 17.0 means all that a computer's number "
        "holds.\n\n"
        "| Set | Way | Mean: digits | Demanded | Standard deviation: digits | Demanded | Result |\n"
        "|---|---|--:|--:|--:|--:|---|\n" +
        ways.file.rows + ways.database.rows + ways.restored.rows;
    return check;
}
