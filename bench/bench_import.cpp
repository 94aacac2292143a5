// SPDX-License-Identifier: MIT
// Import of a million lines of each format against the least that any reader must do: read the file, cut it
// at line feeds and commas, and convert the numbers.
#include "ballbardata.h"
#include "ratio.h"

#include <QFile>
#include <QTemporaryDir>

#include <charconv>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr int line_count = 1000000;

void Write_File(const QString& path, const char* header, bool has_forms)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(header);
    file.write("\n");
    for (int i = 0; i < line_count; ++i) {
        const double angle = i * 0.001;
        const double x = 600 + 500 * std::sin(angle * 3);
        const double y = 1100 + 700 * std::sin(angle * 5);
        const double z = -500 + 400 * std::sin(angle * 7);
        const double length = 900 + 0.01 * std::sin(i * 12.9898);
        char line[256];
        const int start =
            std::snprintf(line, sizeof line, "P%06d,900.0000,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,", i, x, y, z,
                          x + length * std::cos(angle), y + length * std::sin(angle), z);
        const char* end = has_forms ? "0.0012,0.0009,0.0000,0.0000,-150.0000\n" : "0.0000,0.0000,-150.0000\n";
        file.write(line, start);
        file.write(end);
    }
}

double Reference_Loop(const char* path)
{
    FILE* file = std::fopen(path, "rb");
    std::fseek(file, 0, SEEK_END);
    std::string contents(static_cast<size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    if (std::fread(contents.data(), 1, contents.size(), file) != contents.size())
        std::abort();
    std::fclose(file);

    double sum = 0.0;
    std::string_view text(contents);
    while (!text.empty()) {
        const size_t line_end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, line_end);
        text.remove_prefix(std::min(line_end + 1, text.size()));
        for (int field = 0; !line.empty(); ++field) {
            const size_t end = std::min(line.find(','), line.size());
            double value = 0.0;
            if (field >= 2)
                std::from_chars(line.data(), line.data() + end, value);
            sum += value;
            line.remove_prefix(std::min(end + 1, line.size()));
        }
    }
    return sum;
}

void Load(const QString& path)
{
    TBallBarData data;
    if (!data.Load_Data(path) || data.Ballbar_Item_Count() != line_count)
        std::abort();
}

/// The most memory a process needs that loads `path` and nothing else, MiB.
double Peak_Memory(const QString& path)
{
    const pid_t child = fork();
    if (child == 0) {
        Load(path);
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

} // namespace

int main()
{
    const QTemporaryDir directory;
    const struct
    {
        const char* name;
        const char* header;
        bool has_forms;
    } formats[] = {{"B89.4.1", "B89.4.1_Data:Version=1:Type=BallBar", true},
                   {"BallBar_V2", "BallBar_V2", true},
                   {"BallBar_V1", "BallBar_V1", false}};

    std::vector<QString> paths;
    for (const auto& format : formats) {
        paths.push_back(directory.filePath(QLatin1String(format.name)));
        Write_File(paths.back(), format.header, format.has_forms);
    }
    Print_Heading("load MiB", "file MiB", "the size of the file itself");
    for (size_t i = 0; i < paths.size(); ++i) {
        const std::string name = std::string("peak memory, ") + formats[i].name;
        Print_Ratio(name.c_str(), Peak_Memory(paths[i]),
                    static_cast<double>(QFile(paths[i]).size()) / 1024.0 / 1024.0, 2.5);
    }
    Print_Heading("load s", "loop s", "a bare loop that reads, cuts and converts, and keeps nothing");
    for (size_t i = 0; i < paths.size(); ++i) {
        const std::string name = std::string("a million lines, ") + formats[i].name;
        const QByteArray path = paths[i].toLocal8Bit();
        volatile double sum = 0.0;
        const TComparison times(
            7, [&] { Load(paths[i]); }, [&] { sum = Reference_Loop(path.constData()); });
        Print_Ratio(name.c_str(), times.ours, times.reference, 2.0);
    }
}
