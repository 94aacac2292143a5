// SPDX-License-Identifier: MIT
#include "displaycheck.h"
#include "program.h"

namespace
{

constexpr int DECIMALS = 4;

std::string Set_Name(size_t index)
{
    return "stored set " + std::to_string(index + 1);
}

// The six numbers of a row of the summary, each with its name.
std::vector<std::pair<std::string, TExact>> Summary_Of(const TExactSet& set)
{
    return {{"minimum", set.minimum},
            {"maximum", set.maximum},
            {"mean", set.mean},
            {"median", set.median},
            {"estimated range", set.estimated_range},
            {"range", set.range}};
}

// A row of the summary, whose first two cells are date and time.
void Check_Row(const std::string& where, const TExactSet& set, const std::vector<std::string>& cells,
               TTally* tally)
{
    const std::string start = where + ", ";
    size_t column = 2;
    for (const auto& [name, value] : Summary_Of(set)) {
        const std::string shown = column < cells.size() ? cells[column] : "(not there)";
        tally->Number(start + name, value, DECIMALS, shown);
        ++column;
    }
}

// The cells of a line of the CSV file, which are all in quotes.
std::vector<std::string> Unquoted(std::string line)
{
    const std::string between = "\",\"";
    std::vector<std::string> cells;
    line = line.size() < 2 ? std::string() : line.substr(1, line.size() - 2);
    for (size_t end = line.find(between); end != std::string::npos; end = line.find(between)) {
        cells.push_back(line.substr(0, end));
        line.erase(0, end + between.size());
    }
    cells.push_back(line);
    return cells;
}

void Check_Stored_Summary(const TExactSet& set, const std::vector<double>& row, TTally* tally)
{
    const std::pair<const char*, TExact> numbers[] = {{"minimum", set.minimum},
                                                      {"maximum", set.maximum},
                                                      {"mean", set.mean},
                                                      {"median", set.median},
                                                      {"standard deviation", set.deviation}};
    const auto count = static_cast<int>(set.positions.size());
    tally->Count("Stored summary, count", count, count, static_cast<int>(row[0]));
    size_t column = 1;
    for (const auto& [name, value] : numbers)
        // Read back as a double it is the number that was written, or all but.
        tally->Number(std::string("Stored summary, ") + name, value, DECIMALS,
                      Printed(TExact(row[column++]), DECIMALS));
}

void Check_Stored_Position(const TExactPosition& stored, const TExactPosition& saved, TTally* tally)
{
    tally->Text("Backup, position name", Stored_Name(saved.name), stored.name);
    for (size_t i = 0; i < saved.numbers.size(); ++i)
        tally->Number("Backup, numbers of a position", saved.numbers[i], 5, stored.texts[i]);
}

} // namespace

void Check_Summaries(TStore* store, const std::vector<TExactSet>& stored, const std::vector<TExactSet>& saved,
                     TTally* tally)
{
    const auto rows = store->Summary();
    const auto lines = Split(store->Written_Export(), '\n');
    const auto summaries = store->Stored_Summaries();
    const bool complete =
        rows.size() == stored.size() && lines.size() == stored.size() + 2 && summaries.size() == saved.size();
    tally->Set_Place("summaries");
    tally->Decision("All there: sets in the summaries", true, false, complete);
    for (size_t i = 0; complete && i < stored.size(); ++i) {
        tally->Set_Place(Set_Name(i));
        Check_Row("Summary table", stored[i], rows[i], tally);
        Check_Row("CSV file", stored[i], Unquoted(lines[i + 1]), tally);
        Check_Stored_Summary(saved[i], summaries[i], tally);
    }
}

void Check_Stored_Numbers(const std::vector<TExactSet>& stored, const std::vector<TExactSet>& saved,
                          TTally* tally)
{
    tally->Set_Place("backup");
    tally->Decision("All there: sets in the backup", true, false, stored.size() == saved.size());
    for (size_t i = 0; i < std::min(stored.size(), saved.size()); ++i) {
        tally->Set_Place(Set_Name(i));
        const size_t count = saved[i].positions.size();
        tally->Decision("All there: positions in the backup", true, false,
                        stored[i].positions.size() == count);
        for (size_t position = 0; position < std::min(count, stored[i].positions.size()); ++position)
            Check_Stored_Position(stored[i].positions[position], saved[i].positions[position], tally);
    }
}
