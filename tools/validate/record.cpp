// SPDX-License-Identifier: MIT
#include "record.h"

#include "program.h"
#include "tally.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDate>
#include <QFile>
#include <QSysInfo>

#include <boost/version.hpp>
#include <cstdio>

namespace
{

const char* const INTRODUCTION =
    "Written by `kelvora-validate`. What the program computes and shows was held against numbers from "
    "elsewhere: certified ones, examples "
    "that "
    "were worked\nout by hand, and arithmetic with 50 digits that shares nothing with the program but the "
    "formulas "
    "of `numbers.md`. The\nprogram's side is the program itself: its reader, its windows, its database, its "
    "backup. "
    "`manual.md`, section\n*Validation*, says what this covers, what it does not, and when to repeat it.\n";

const char* const SIGNATURES = "## Assessment\n\n"
                               "| | |\n|---|---|\n"
                               "| Fit for the intended use (yes / no, remarks) | |\n"
                               "| Carried out by | |\n"
                               "| Date | |\n"
                               "| Signature | |\n";

std::string Processor()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    file.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines)
        if (line.startsWith("model name"))
            return line.mid(line.indexOf(':') + 1).trimmed().toStdString();
    return Text_Of(QSysInfo::currentCpuArchitecture());
}

std::string Compiler()
{
#ifdef __clang__
    return "clang++ " __clang_version__;
#else
    return "g++ " __VERSION__;
#endif
}

std::string Sqlite()
{
    const auto rows = Query(QStringLiteral(":memory:"), QStringLiteral("SELECT sqlite_version()"));
    return rows.empty() ? "" : Text_Of(rows.front().value(0).toString());
}

// What tells one build of the program from another; empty where the program is not beside the tool.
std::string Program_Checksum()
{
    QFile program(QCoreApplication::applicationDirPath() + QStringLiteral("/kelvora"));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!program.open(QIODevice::ReadOnly) || !hash.addData(&program))
        return "not beside this tool";
    return "`" + hash.result().toHex().toStdString() + "`";
}

std::string Identification(unsigned long long seed)
{
    const std::vector<std::string> rows[] = {
        {"Program", "Kelvora " KELVORA_VERSION},
        {"SHA-256 of its file", Program_Checksum()},
        {"Date", Text_Of(QDate::currentDate().toString(Qt::ISODate))},
        {"Operating system", Text_Of(QSysInfo::prettyProductName())},
        {"Processor", Processor()},
        {"Compiler", Compiler()},
        {"Qt", qVersion()},
        {"SQLite", Sqlite()},
        {"Yardstick", "Boost.Multiprecision " BOOST_LIB_VERSION ", 50 decimal digits"},
        {"Seed of the random measurements", std::to_string(seed)}};
    std::string table = "| Examined | |\n|---|---|\n";
    for (const auto& row : rows)
        table += Table_Row(row);
    return table;
}

std::string Section(const std::string& index, const TCheck& check)
{
    const std::string fault = check.passed ? "" : "\nFAILED: " + check.fault + "\n";
    return "\n## " + index + ". " + check.title + "\n\n**Demanded:** " + check.demand + "\n\n**Found:** " +
           check.found + " – " + Verdict(check.passed) + ".\n" + (check.details.empty() ? "" : "\n") +
           check.details + fault;
}

std::string Quantities(const TTally& tally)
{
    std::string table = "| Quantity | Decimals | Compared | Ties | Wrong |\n|---|---|--:|--:|--:|\n";
    for (const auto& [quantity, count] : tally.Counts()) {
        const std::string decimals = count.decimals == TTally::DRAWN   ? "drawn"
                                     : count.decimals == TTally::WHOLE ? "–"
                                                                       : std::to_string(count.decimals);
        table += Table_Row(
            {quantity, decimals, Grouped(count.compared), Grouped(count.ties), Grouped(count.wrong)});
    }
    return table;
}

std::string Examples(const std::string& title, const std::vector<TTally::TExample>& examples)
{
    if (examples.empty())
        return "";
    std::string table =
        "\n" + title + "\n\n| Where | Quantity | By the formula | Shown |\n|---|---|---|---|\n";
    for (const auto& [place, quantity, expected, shown] : examples)
        table += Table_Row({place, quantity, expected, shown});
    return table;
}

} // namespace

void TRecord::Add(const TCheck& check)
{
    d_checks.push_back(check);
    if (check.passed)
        std::fprintf(stderr, "passed: %zu. %s\n", d_checks.size(), check.title.c_str());
    else
        std::fprintf(stderr, "FAILED: %zu. %s: %s\n", d_checks.size(), check.title.c_str(),
                     check.fault.c_str());
}

bool TRecord::Passed() const
{
    for (const TCheck& check : d_checks)
        if (!check.passed)
            return false;
    return true;
}

std::string TRecord::Text(unsigned long long seed) const
{
    std::string summary = "| | Check | Found | Result |\n|--:|---|---|---|\n";
    std::string sections;
    int number = 0;
    for (const TCheck& check : d_checks) {
        const std::string index = std::to_string(++number);
        summary += Table_Row({index, check.title, check.found, Verdict(check.passed)});
        sections += Section(index, check);
    }
    return "# Validation record of Kelvora " KELVORA_VERSION "\n\n" + Identification(seed) +
           "\nResult: " + (Passed() ? "**all checks passed**" : "**FAILED**") + "\n\n" + INTRODUCTION + "\n" +
           summary + sections + "\n" + SIGNATURES;
}

std::string Tables_Of(const TTally& tally)
{
    return Quantities(tally) + Examples("The first ties:", tally.Ties()) +
           Examples("What is wrong:", tally.Faults());
}

std::string First_Fault(const TTally& tally)
{
    if (tally.Faults().empty())
        return "nothing was compared";
    const auto& [place, quantity, expected, shown] = tally.Faults().front();
    return place + ", " + quantity + ": " + shown + " instead of " + expected;
}

std::string Table_Row(const std::vector<std::string>& cells)
{
    std::string row = "|";
    for (const std::string& cell : cells)
        row.append(" ").append(cell).append(" |");
    return row + "\n";
}

std::string Verdict(bool passed)
{
    return passed ? "passed" : "**FAILED**";
}

std::string Grouped(long long number)
{
    std::string digits = std::to_string(number);
    for (size_t end = digits.size(); end > 3; end -= 3)
        digits.insert(end - 3, ",");
    return digits;
}
