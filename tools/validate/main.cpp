// SPDX-License-Identifier: MIT
// Validates Kelvora on this computer and writes the record.
#include "checks.h"
#include "openglwidget.h"
#include "program.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QSaveFile>
#include <QSurfaceFormat>

#include <cstdio>

namespace
{

constexpr int DEFAULT_SETS = 1000;
const QString SEED = QStringLiteral("seed");
const QString SETS = QStringLiteral("sets");
const QString OUTPUT = QStringLiteral("output");

void Read_Options(QCommandLineParser* options)
{
    options->setApplicationDescription(
        QStringLiteral("Validates Kelvora on this computer and writes the record."));
    options->addHelpOption();
    options->addOptions(
        {{SEED, QStringLiteral("Seed of the random measurements, 0 or more; the record states it."),
          QStringLiteral("number"), QStringLiteral("1")},
         {SETS, QStringLiteral("How many random measurements."), QStringLiteral("number"),
          QString::number(DEFAULT_SETS)},
         {OUTPUT, QStringLiteral("File to write the record to, in Markdown, instead of the standard output."),
          QStringLiteral("file")}});
    options->process(*QCoreApplication::instance());
}

int Refuse(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 1;
}

bool Write(const QString& path, const std::string& text)
{
    if (path.isEmpty())
        return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(text.data(), static_cast<qint64>(text.size())) >= 0 && file.commit();
}

TRecord Validate(const TPrivateHome& home, unsigned long long seed, int sets)
{
    TRecord record;
    TTally tally;
    record.Add(Check_Reference_Data(home));
    for (const TCheck& check : Check_Rules(home, &tally))
        record.Add(check);
    record.Add(Check_Formats(home, &tally));
    TTally random;
    record.Add(Check_Random_Sets(home, seed, sets, &random));
    tally.Add(random);
    record.Add(Check_Page_Of_Numbers(tally));
    return record;
}

} // namespace

int main(int argc, char* argv[])
{
    const TPrivateHome home; // before anything asks for the user's own
    Q_INIT_RESOURCE(kelvora);
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelvora-validate"));
    QCommandLineParser options;
    Read_Options(&options);
    bool seed_valid = false;
    bool sets_valid = false;
    const qulonglong seed = options.value(SEED).toULongLong(&seed_valid);
    const int sets = options.value(SETS).toInt(&sets_valid);
    if (!options.positionalArguments().isEmpty() || !seed_valid || !sets_valid || sets < 1)
        return Refuse(QStringLiteral("Not understood; --help tells the options"));

    const TRecord record = Validate(home, seed, sets);
    if (!Write(options.value(OUTPUT), record.Text(seed)))
        return Refuse(QStringLiteral("The record cannot be written"));
    return record.Passed() ? 0 : 1;
}
