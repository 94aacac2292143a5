// SPDX-License-Identifier: MIT
// The page of numbers and what was really compared: neither may promise what the other does not keep.
#include "checks.h"
#include "exactset.h"
#include "program.h"

namespace
{

std::string Trimmed_Cell(const std::string& cell)
{
    const size_t begin = cell.find_first_not_of(' ');
    return begin == std::string::npos ? "" : cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin);
}

// The page says "4", "5", "drawn" or "–" before anything else.
std::string Rounding_Of(int decimals)
{
    return decimals == TTally::DRAWN ? "drawn" : decimals == TTally::WHOLE ? "–" : std::to_string(decimals);
}

/// A row of the page: the quantity, its decimals, and whether it is checked.
struct TPageRow
{
    std::string quantity;
    std::string rounding;
    bool checked;
};

std::vector<TPageRow> Read_Page()
{
    std::vector<TPageRow> rows;
    for (const std::string& line : Split(TPrivateHome::Read(":/docs/numbers.md"), '\n')) {
        const std::vector<std::string> cells = Split(line, '|');
        if (cells.size() == 8 && line.rfind("|---", 0) != 0 && line.rfind("| Quantity", 0) != 0)
            rows.push_back({Trimmed_Cell(cells[1]), Trimmed_Cell(cells[4]), Trimmed_Cell(cells[6]) == "yes"});
    }
    return rows;
}

} // namespace

TCheck Check_Page_Of_Numbers(const TTally& tally)
{
    TCheck check;
    std::map<std::string, TTally::TCount> counts = tally.Counts();
    int checked = 0;
    int others = 0;
    for (const TPageRow& row : Read_Page()) {
        const auto found = counts.find(row.quantity);
        const std::string rounding = found == counts.end() ? "" : Rounding_Of(found->second.decimals);
        if (row.checked ? rounding != row.rounding : found != counts.end())
            check.fault += row.quantity + ": compared with '" + rounding + "' decimals, the page says '" +
                           row.rounding + "'. ";
        ++(row.checked ? checked : others);
        counts.erase(row.quantity);
    }
    for (const auto& [quantity, count] : counts)
        if (quantity.find(": ") == std::string::npos) // "All there: ..." and the like are no quantities
            check.fault += quantity + " is not on the page. ";
    check.title = "The table of numbers";
    check.demand =
        "each quantity that `numbers.md` marks as checked was compared in this run with the decimals that it "
        "states there, and\nnothing was compared that it does not list.";
    check.passed = check.fault.empty() && checked > 0;
    check.found = std::to_string(checked) + " quantities checked; " + std::to_string(others) +
                  " listed that cannot be read off by a program";
    return check;
}
