// SPDX-License-Identifier: MIT
#pragma once

#include "record.h"

#include <string>

class TWindow;

/// A rule with its worked example: what comes out by hand beside what the program shows.
class TWorkedExample
{
public:
    TWorkedExample(const std::string& title, const std::string& rule);

    /// Puts a file or another text into the record.
    void Show(const std::string& introduction, const std::string& text);
    void Expect(const std::string& what, const std::string& by_hand, const std::string& shown);

    TCheck Check() const;

private:
    TCheck d_check;
    std::string d_rows;
    int d_compared{0};
};

/// A measurement file of the current format with bars of these lengths along the x axis.
std::string File_Of(const std::vector<std::string>& lengths);

/// What stands behind `label` in the report.
std::string In_Report(const TWindow& window, const std::string& label);
