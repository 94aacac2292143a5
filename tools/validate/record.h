// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

class TTally;

/// One check as the record tells of it, in Markdown.
struct TCheck
{
    std::string title;
    std::string demand;
    std::string found;
    bool passed{false};
    std::string details; ///< tables and examples
    std::string fault;   ///< the first thing that did not pass, in one line
};

/// The record that is read, printed and signed: what was examined, a table of all checks, then each of them.
class TRecord
{
public:
    /// Adds a check and says on the standard error output how it ended.
    void Add(const TCheck& check);

    bool Passed() const;
    std::string Text(unsigned long long seed) const;

private:
    std::vector<TCheck> d_checks;
};

/// The tables of a tally: its quantities, its ties, and what is wrong.
std::string Tables_Of(const TTally& tally);

/// What is wrong first, in one line.
std::string First_Fault(const TTally& tally);

/// A row of a table in Markdown, with its line feed.
std::string Table_Row(const std::vector<std::string>& cells);

std::string Verdict(bool passed);

/// 1234567 as 1,234,567.
std::string Grouped(long long number);
