// SPDX-License-Identifier: MIT
#include "worked.h"

#include "exactset.h"
#include "program.h"

TWorkedExample::TWorkedExample(const std::string& title, const std::string& rule)
{
    d_check.title = title;
    d_check.demand = rule;
}

void TWorkedExample::Show(const std::string& introduction, const std::string& text)
{
    d_check.details += introduction + "\n\n```\n" + text + (text.back() == '\n' ? "" : "\n") + "```\n\n";
}

void TWorkedExample::Expect(const std::string& what, const std::string& by_hand, const std::string& shown)
{
    const bool right = by_hand == shown;
    ++d_compared;
    d_rows += Table_Row({what, by_hand, shown, Verdict(right)});
    if (!right && d_check.fault.empty())
        d_check.fault = what + ": " + shown + " instead of " + by_hand;
}

TCheck TWorkedExample::Check() const
{
    TCheck check = d_check;
    check.passed = check.fault.empty() && d_compared > 0;
    check.found =
        check.passed ? std::to_string(d_compared) + " values as worked out" : "a value that differs";
    check.details += "| | By hand | Kelvora | Result |\n|---|---|---|---|\n" + d_rows;
    return check;
}

std::string File_Of(const std::vector<std::string>& lengths)
{
    std::string file = "B89.4.1_Data:Version=1:Type=BallBar\n";
    for (size_t i = 0; i < lengths.size(); ++i)
        file += "P" + std::to_string(i + 1) + ",,0,0,0," + lengths[i] + ",0,0,0,0,0,0,0\n";
    return file;
}

std::string In_Report(const TWindow& window, const std::string& label)
{
    const std::string report = window.Report();
    const size_t begin = report.find(label);
    if (begin == std::string::npos)
        return "(not there)";
    const std::string rest = report.substr(begin + label.size());
    const std::string line = rest.substr(0, rest.find('\n'));
    const std::string number = line.substr(std::min(line.find_first_not_of(' '), line.size()));
    return number.substr(0, number.find(' '));
}
