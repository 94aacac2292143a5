// SPDX-License-Identifier: MIT
#include "program.h"

#include "ballbardata.h"
#include "exactset.h"
#include "graphwidget.h"
#include "kelvora.h"
#include "machinewidget.h"

#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableWidget>
#include <QThread>
#include <QTime>
#include <QToolButton>
#include <QTreeWidget>

#include <cstdlib>

namespace
{

template<typename T> T* Child(const QWidget* parent, const char* name)
{
    auto* child = parent->findChild<T*>(QLatin1String(name));
    if (child == nullptr)
        qFatal("The window has no '%s'", name);
    return child;
}

// Selects the `index`-th of all stored sets, or all of them.
void Select_Stored(const TDatabaseDialog* dialog, int index)
{
    auto* tree = Child<QTreeWidget>(dialog, "entries");
    tree->expandAll();
    if (index < 0) {
        tree->clearSelection();
        for (int date = 0; date < tree->topLevelItemCount(); ++date)
            tree->topLevelItem(date)->setSelected(true);
        return;
    }
    for (int date = 0; date < tree->topLevelItemCount(); ++date) {
        QTreeWidgetItem* item = tree->topLevelItem(date);
        if (index < item->childCount()) {
            tree->setCurrentItem(item->child(index));
            return;
        }
        index -= item->childCount();
    }
}

} // namespace

std::vector<QVariantList> Query(const QString& database_file, const QString& statement)
{
    const QString connection = QStringLiteral("query");
    std::vector<QVariantList> rows;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(database_file);
        if (!database.open())
            qFatal("Cannot open '%s'", qPrintable(database_file));
        QSqlQuery query(statement, database);
        while (query.next()) {
            rows.emplace_back();
            for (int column = 0; column < query.record().count(); ++column)
                rows.back().append(query.value(column));
        }
    }
    QSqlDatabase::removeDatabase(connection); // once nothing uses it any more
    return rows;
}

std::string Text_Of(const QString& text)
{
    return text.toStdString();
}

TPrivateHome::TPrivateHome()
{
    if (!d_directory.isValid())
        qFatal("No temporary directory can be made");
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, d_directory.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DISPLAY"); // the invisible screen would borrow OpenGL from a visible one, half working
    QDir(d_directory.path()).mkdir(QStringLiteral(".kelvora"));
}

std::string TPrivateHome::Path(const char* name) const
{
    return Text_Of(d_directory.path()) + name;
}

std::string TPrivateHome::Write(const std::string& name, const std::string& content) const
{
    std::string path = Path(("/" + name).c_str());
    QFile file(QString::fromStdString(path));
    const auto size = static_cast<qint64>(content.size());
    if (!file.open(QIODevice::WriteOnly) || file.write(content.data(), size) != size || !file.flush())
        qFatal("Cannot write '%s'", path.c_str());
    return path;
}

std::string TPrivateHome::Read(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

void TPrivateHome::Remove_Database() const
{
    QFile::remove(QString::fromStdString(Database()));
}

TWindow::TWindow() : d_window(std::make_unique<TKelvora>())
{
    const auto fields = d_window->findChildren<QLineEdit*>();
    for (QLineEdit* field : fields)
        d_fields[Text_Of(field->objectName())] = field;
}

TWindow::~TWindow() = default;

void TWindow::Import(const std::string& path)
{
    d_window->Import_Ballbar_Data(QString::fromStdString(path));
    d_positions = Shown_Positions();
}

void TWindow::Save()
{
    const int second = QTime::currentTime().second();
    while (QTime::currentTime().second() == second)
        QThread::msleep(10);
    d_window->Menu_Add_To_Database();
}

void TWindow::Load(int index)
{
    auto* dialog = d_window->findChild<TDatabaseDialog*>();
    Select_Stored(dialog, index);
    dialog->Load();
    d_positions = Shown_Positions();
}

void TWindow::Set_Tolerance(const TExactTolerance& tolerance)
{
    d_fields.at("expression")->setText(QString::fromStdString(tolerance.expression));
    Child<QToolButton>(d_window.get(), "apply")->click();
    Child<QSlider>(d_window.get(), "sub_tolerance")->setValue(tolerance.slider);
}

void TWindow::Select(int position)
{
    d_window->Ballbar_Item_Clicked(position < d_positions ? position : -1);
}

int TWindow::Shown_Positions() const
{
    const std::string label = "Measurement Count:";
    const std::string report = Report();
    const size_t begin = report.find(label);
    return begin == std::string::npos ? 0 : std::atoi(report.c_str() + begin + label.size());
}

std::string TWindow::Field(const std::string& name) const
{
    return Text_Of(d_fields.at(name)->text());
}

bool TWindow::Is_Marked(const std::string& name) const
{
    return !d_fields.at(name)->styleSheet().isEmpty();
}

std::vector<double> TWindow::Machine_Limits(const std::vector<std::string>& typed)
{
    const char* const names[] = {"min_x", "max_x", "min_y", "max_y", "min_z", "max_z"};
    for (size_t i = 0; i < typed.size(); ++i)
        d_fields.at(names[i])->setText(QString::fromStdString(typed[i]));
    const auto limits = d_window->findChild<TMachineWidget*>()->Machine_Dimensions();
    return {limits.x_min, limits.x_max, limits.y_min, limits.y_max, limits.z_min, limits.z_max};
}

std::string TWindow::Report() const
{
    return Text_Of(Child<QPlainTextEdit>(d_window.get(), "report")->toPlainText());
}

std::vector<TVector2> TWindow::Histogram(int data_set) const
{
    const auto* graph = Child<TGraphWidget>(d_window.get(), "histogram");
    std::vector<TVector2> points;
    if (d_positions == 0 || Report().find("\nINF:") != std::string::npos)
        return points;
    for (int i = 0; i < graph->DataSetSize(data_set); ++i)
        points.push_back(graph->GetPoint(data_set, i));
    return points;
}

TStore::TStore(const TPrivateHome& home) : d_home(home)
{
    if (!Connect_To_Database(QString::fromStdString(home.Database())))
        qFatal("%s", qPrintable(Last_Error()));
}

bool TStore::Save(const std::string& file, int number)
{
    TBallBarData set;
    if (!set.Load_Data(QString::fromStdString(file)))
        return false;
    TDatabaseItem item; // filled as the main window does, but under a time of its own
    for (const Types::TBallbar_Item& position : set.Ballbar_Items())
        item.Add_Ballbar(position);
    item.Update_Stats();
    item.Set_Date(QStringLiteral("2026 Jan 01"));
    item.Set_Time(QTime(8, 0).addSecs(number).toString(QStringLiteral("hh:mm:ss")));
    return Add_Database_Item(item);
}

std::vector<std::vector<std::string>> TStore::Summary()
{
    Select_Stored(this, -1);
    const auto* table = Child<QTableWidget>(this, "summary");
    std::vector<std::vector<std::string>> rows(static_cast<size_t>(table->rowCount()));
    for (int row = 0; row < table->rowCount(); ++row)
        for (int column = 0; column < table->columnCount(); ++column)
            rows[static_cast<size_t>(row)].push_back(Text_Of(table->item(row, column)->text()));
    return rows;
}

std::string TStore::Written_Backup()
{
    QFile::remove(Choose_Backup_File());
    Backup();
    return TPrivateHome::Read(d_home.Backup());
}

std::string TStore::Written_Export()
{
    Select_Stored(this, -1);
    QFile::remove(Choose_Export_File());
    Export();
    return TPrivateHome::Read(d_home.Export());
}

void TStore::Restore_Into_New_Database()
{
    d_home.Remove_Database();
    if (!Connect_To_Database(QString::fromStdString(d_home.Database())))
        qFatal("%s", qPrintable(Last_Error()));
    Restore();
}

std::vector<std::vector<double>> TStore::Stored_Summaries() const
{
    std::vector<std::vector<double>> rows;
    for (const QVariantList& row :
         Query(QString::fromStdString(d_home.Database()),
               QStringLiteral("SELECT count,min_length,max_length,mean_length,median_length,stdev_length "
                              "FROM summary ORDER BY date_id,time_id"))) {
        rows.emplace_back();
        for (const QVariant& value : row)
            rows.back().push_back(value.toDouble());
    }
    return rows;
}

const std::vector<Types::TBallbar_Item>& TStore::Loaded(int index)
{
    Select_Stored(this, index);
    Load();
    return Ballbar_Items();
}

QString TStore::Choose_Backup_File()
{
    return QString::fromStdString(d_home.Backup());
}

QString TStore::Choose_Restore_File()
{
    return Choose_Backup_File();
}

QString TStore::Choose_Export_File()
{
    return QString::fromStdString(d_home.Export());
}
