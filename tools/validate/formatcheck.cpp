// SPDX-License-Identifier: MIT
// The three formats from file to file again, all by the commands of the main window and the database window.
#include "checks.h"
#include "displaycheck.h"
#include "program.h"

namespace
{

// The same three positions; in the older formats without the probe offset, in the oldest without form errors.
const char* const FILES[] = {
    "BallBar_V1\n"
    "Rear left,,100.12345,200.5,-150.00001,600.1357,200.5,-150.00001,-20.5,0.25,-150.12\n"
    "Diagonal,,100,200,-150,412.3456,523.4567,68.69687,20.5,0.25,-149.88\n"
    "Vertical,,-0.00002,0,0,0.00003,0,500.01203,0,0,-150\n",
    "BallBar_V2\n"
    "Rear left,,100.12345,200.5,-150.00001,600.1357,200.5,-150.00001,0.0008,0.00123,-20.5,0.25,-150.12\n"
    "Diagonal,,100,200,-150,412.3456,523.4567,68.69687,0.0011,0.0007,20.5,0.25,-149.88\n"
    "Vertical,,-0.00002,0,0,0.00003,0,500.01203,0.00042,0,0,0,-150\n",
    "B89.4.1_Data:Version=1:Type=BallBar\n"
    "Name,Length,X1,Y1,Z1,X2,Y2,Z2,Form1,Form2,ProbeX,ProbeY,ProbeZ\n"
    "Rear "
    "left,500.01225,79.62345,200.75,-300.12001,579.6357,200.75,-300.12001,0.0008,0.00123,-20.5,0.25,-150.12\n"
    "Diagonal,,120.5,200.25,-299.88,432.8456,523.7067,-81.18313,0.0011,0.0007,20.5,0.25,-149.88\n"
    "Vertical,,-0.00002,0,-150,0.00003,0,350.01203,0.00042,0,0,0,-150\n"};

TExactTolerance Tolerance()
{
    TExactTolerance tolerance;
    tolerance.a = "0.012";
    tolerance.b = "0.006";
    tolerance.c = "1000";
    tolerance.expression = "0.012 + 0.006L/1000";
    tolerance.slider = 7;
    return tolerance;
}

struct TRound
{
    std::vector<TExactSet> sets;
    std::vector<std::string> reports;
};

TRound Import_And_Save(const TPrivateHome& home, TTally* tally)
{
    TRound imported;
    TWindow window;
    window.Set_Tolerance(Tolerance());
    for (const char* file : FILES) {
        imported.sets.push_back(Read_Measurement(file));
        window.Import(home.Write("round.dat", file));
        window.Save();
        imported.reports.push_back(window.Report());
        Check_Display(&window, imported.sets.back(), Tolerance(), "imported", tally);
    }
    return imported;
}

void Check_Restored(const TRound& imported, const std::vector<TExactSet>& stored, TTally* tally)
{
    TWindow window;
    window.Set_Tolerance(Tolerance());
    for (size_t i = 0; i < stored.size() && i < imported.sets.size(); ++i) {
        window.Load(static_cast<int>(i));
        tally->Text("The same: report after a restore", imported.reports[i], window.Report());
        Check_Display(&window, imported.sets[i], Tolerance(), "restored", tally);
    }
}

// Tells the sets as they were stored.
std::vector<TExactSet> Back_Up_And_Restore(const TPrivateHome& home, const TRound& imported, TTally* tally)
{
    TStore store(home);
    const std::string backup = store.Written_Backup();
    std::vector<TExactSet> stored = Read_Backup(backup);
    Check_Stored_Numbers(stored, imported.sets, tally);
    Check_Summaries(&store, stored, imported.sets, tally);
    store.Restore_Into_New_Database();
    Check_Summaries(&store, stored, imported.sets, tally);
    tally->Set_Place("backup of the restored database");
    tally->Decision("The same: backup after a restore", true, false, store.Written_Backup() == backup);
    return stored;
}

const char* const DEMAND = "a file of each format, imported, saved, backed up, restored into an empty "
                           "database and loaded again, gives the\n"
                           "same report to the letter, and every number is what the formula gives. (The "
                           "coordinates have 5 decimals, so that\n"
                           "storing loses nothing.)";

} // namespace

TCheck Check_Formats(const TPrivateHome& home, TTally* all)
{
    TTally tally;
    home.Remove_Database();
    const TRound imported = Import_And_Save(home, &tally);
    Check_Restored(imported, Back_Up_And_Restore(home, imported, &tally), &tally);
    all->Add(tally);

    const TTally::TCount sum = tally.Sum();
    TCheck check;
    check.title = "Each format round";
    check.demand = DEMAND;
    check.found = "3 formats, " + Grouped(sum.compared) + " comparisons: " + Grouped(sum.wrong) + " wrong, " +
                  Grouped(sum.ties) + " ties";
    check.passed = sum.wrong == 0;
    for (const char* file : FILES)
        check.details.append("```\n").append(file).append("```\n\n");
    check.details += Tables_Of(tally);
    check.fault = First_Fault(tally);
    return check;
}
