// SPDX-License-Identifier: MIT
#include "databasedialog.h"

#include "backup.h"
#include "keptcopies.h"
#include "numbers.h"
#include "panellayout.h"
#include "wholefile.h"
#include "workprogress.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QShowEvent>
#include <QTableWidget>
#include <QTreeWidget>

#include <limits>

namespace
{

using BackupTransfer::TOutcome;
using BackupTransfer::TProgress;

constexpr int SPACING = 4;

QLabel* Create_Title(const QString& text, QWidget* field)
{
    auto* title = new QLabel(text);
    QFont font = title->font();
    font.setWeight(QFont::Normal);
    font.setItalic(true);
    font.setUnderline(true);
    title->setFont(font);
    title->setBuddy(field);
    field->setAccessibleName(text); // trees and tables do not take it from their buddies
    return title;
}

// Keeps dates and times, as sets are filed under, from being cut short beside the scroll bar. A tree that is
// folded in has by itself no room for times. Other months may take a letter more than today's.
void Make_Room_For_Times(QTreeWidget* tree)
{
    const TDatabaseItem now;
    new QTreeWidgetItem(tree, {now.Date(), now.Time()});
    const QAbstractItemView* view = tree; // tells its columns' widths to everybody
    const int letter = tree->fontMetrics().horizontalAdvance(QLatin1Char('M'));
    const int date = view->sizeHintForColumn(0) + letter;
    const int time = view->sizeHintForColumn(1) + letter;
    tree->clear();
    tree->header()->setMinimumSectionSize(time);
    tree->setMinimumWidth(date + time + tree->verticalScrollBar()->sizeHint().width() +
                          2 * tree->frameWidth());
}

QTreeWidget* Create_Tree(const QStringList& titles)
{
    auto* tree = new QTreeWidget;
    tree->setObjectName(QStringLiteral("entries"));
    tree->setHeaderLabels(titles);
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    Make_Room_For_Times(tree);
    return tree;
}

// A time below its date. Its first column is empty, and that is the one read out for the row.
void Create_Time(QTreeWidgetItem* date, const QString& time)
{
    auto* item = new QTreeWidgetItem(date, {QString(), time});
    item->setData(0, Qt::AccessibleTextRole, time);
}

QTableWidget* Create_Summary_Table(const QStringList& titles)
{
    auto* table = new QTableWidget(0, titles.size());
    table->setObjectName(QStringLiteral("summary"));
    table->setHorizontalHeaderLabels(titles);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false); // the arrow keys do that; Tab goes on to the buttons
    table->setWordWrap(false);
    QHeaderView* header = table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    for (int column = 0; column < titles.size(); ++column)
        header->setMinimumSectionSize(qMax(header->minimumSectionSize(), header->sectionSizeHint(column)));
    return table;
}

// The cells of one row of the summary table.
QStringList Summary_Cells(const QString& date, const QString& time, const TDatabaseItem& item)
{
    QStringList cells{date, time};
    for (const double value : {item.Minimum(), item.Maximum(), item.Mean(), item.Median(),
                               Estimated_Range(item.Standard_Deviation()), item.Maximum() - item.Minimum()})
        cells.append(Fixed(value, 4));
    return cells;
}

// All rows at once: a table that grows row by row takes ever longer for each.
void Show_Rows(QTableWidget* table, const std::vector<QStringList>& rows)
{
    table->setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < table->rowCount(); ++row) {
        const QStringList& cells = rows[static_cast<size_t>(row)];
        for (int column = 0; column < cells.size(); ++column) {
            auto* cell = new QTableWidgetItem(cells[column]);
            cell->setTextAlignment(Qt::AlignCenter);
            table->setItem(row, column, cell);
        }
    }
}

QStringList Row_Cells(const QTableWidget* table, int row)
{
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column)
        cells.append(table->item(row, column)->text());
    return cells;
}

// Where the file cannot be put in place, that is the outcome.
TOutcome Put_In_Place(QSaveFile* file, const TOutcome& outcome)
{
    const QString error = WholeFile::Put_In_Place(file);
    return error.isEmpty() ? outcome : TOutcome{TOutcome::REFUSED, 0, error};
}

} // namespace

TDatabaseDialog::TDatabaseDialog(QWidget* parent, Qt::WindowFlags flags)
    : QDialog(parent, flags), d_summary_table(Create_Summary_Table(
                                  {tr("Date"), tr("Time"), tr("Min Length"), tr("Max Length"),
                                   tr("Mean Length"), tr("Median Length"), tr("Est. Range"), tr("Range")})),
      d_tree(Create_Tree({tr("Date"), tr("Time")}))
{
    auto* layout = new QGridLayout(this);
    layout->setSpacing(SPACING);
    layout->setContentsMargins(SPACING, SPACING, SPACING, SPACING);
    layout->addWidget(Create_Title(tr("Database Entries"), d_tree), 0, 0);
    layout->addWidget(Create_Title(tr("Measurement Summary"), d_summary_table), 0, 1);
    layout->addWidget(d_tree, 1, 0);
    layout->addWidget(d_summary_table, 1, 1);
    layout->addLayout(Create_Buttons(), 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 5);
    connect(d_tree, &QTreeWidget::itemSelectionChanged, this, &TDatabaseDialog::Selection_Changed);

    setWindowTitle(tr("Database"));
    Resize_With_Letters(this, {1201, 601});
    Update_Buttons();
}

int TDatabaseDialog::exec()
{
    if (d_busy) // the work would wait for the window to be closed, and the window for the work
        return Rejected;
    d_failures.clear();
    if (!d_database_file.isEmpty() && !Connect_To_Database(QString(d_database_file))) {
        d_tree->clear();
        d_failures.insert(QString(), d_last_error);
    }
    return QDialog::exec();
}

bool TDatabaseDialog::Connect_To_Database(const QString& file)
{
    if (d_busy)
        return false;
    d_database_file = file;
    if (d_database.Is_Connected())
        d_database.Disconnect();
    if (!d_database.Connect(file))
        return Fail(tr("Error connecting to database: %1").arg(d_database.Last_Error()));
    if (!d_database.Initialize())
        return Fail(tr("Error initializing database: %1").arg(d_database.Last_Error()));
    Update_Tree();
    return true;
}

bool TDatabaseDialog::Add_Database_Item(const TDatabaseItem& item)
{
    if (!Is_Ready())
        return false;
    if (!d_database.Add_Database_Item(item))
        return Fail(d_database.Last_Error());
    Update_Tree();
    return true;
}

void TDatabaseDialog::reject()
{
    if (d_busy)
        return;
    if (d_progress)
        d_progress->hide();
    QDialog::reject();
}

void TDatabaseDialog::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) // restored from an icon it keeps the widths that the user has chosen
        Fit_Columns();
    QDialog::showEvent(event);
}

void TDatabaseDialog::Update_Tree()
{
    d_tree->clear();
    if (!d_database.Is_Connected())
        return;
    const TDatabase::TReading reading(&d_database);
    bool valid = false;
    QList<QTreeWidgetItem*> date_items;
    const QStringList dates = d_database.Date_List(&valid);
    for (const QString& date : dates) {
        date_items.append(new QTreeWidgetItem(QStringList(date)));
        const QStringList times = d_database.Time_List(date, &valid);
        for (const QString& time : times)
            Create_Time(date_items.back(), time);
    }
    d_tree->addTopLevelItems(date_items);
    if (isVisible()) // to measure the texts takes longer than to list them, and nobody sees most lists
        Fit_Columns();
}

void TDatabaseDialog::Selection_Changed()
{
    d_summary_table->setRowCount(0);
    if (!d_database.Is_Connected())
        return;
    Update_Buttons();
    const std::vector<TKey> keys = Selected_Keys();
    if (keys.empty()) // most likely the tree is being filled anew, and one wait for a lock is enough
        return;
    const TDatabase::TReading reading(&d_database);
    std::vector<QStringList> rows;
    for (const auto& [date, time] : keys) {
        bool valid = false;
        const TDatabaseItem item = d_database.Database_Item(date, time, &valid);
        if (valid)
            rows.push_back(Summary_Cells(date, time, item));
    }
    d_summary_table->setUpdatesEnabled(false);
    Show_Rows(d_summary_table, rows);
    d_summary_table->setUpdatesEnabled(true);
}

void TDatabaseDialog::Load()
{
    d_ballbar_items.clear();
    if (!d_database.Is_Connected() || d_tree->selectedItems().size() != 1)
        return;
    const std::vector<TKey> keys = Selected_Keys();
    if (keys.empty())
        return;
    bool valid = false;
    const TDatabaseItem item = d_database.Database_Item(keys.front().first, keys.front().second, &valid);
    if (!valid)
        return;
    d_ballbar_items = item.Ballbar_Items();
    emit Load_From_Database();
}

void TDatabaseDialog::Backup()
{
    if (!Is_Ready())
        return;
    QSaveFile file(Choose_Backup_File());
    if (!Open(&file, tr("Backup")))
        return;
    TOutcome outcome;
    Work(tr("Writing the backup"),
         [&](const TProgress& progress) { outcome = BackupTransfer::Write(&d_database, &file, progress); });
    if (outcome.end != TOutcome::CUT_SHORT) // left on screen it tells
        d_progress->hide();
    Report(tr("Backup"), outcome.end == TOutcome::REFUSED ? outcome : Put_In_Place(&file, outcome));
}

void TDatabaseDialog::Restore()
{
    if (!Is_Ready())
        return;
    const QString file_name = Choose_Restore_File();
    if (file_name.isEmpty())
        return;
    QByteArray content;
    TOutcome outcome{TOutcome::REFUSED, 0, {}};
    if (WholeFile::Read(file_name, &content, &outcome.reason))
        Work(tr("Restoring the backup"), [&](const TProgress& progress) {
            outcome = BackupTransfer::Read(content, &d_database, progress);
        });
    Report(tr("Restore"), outcome);
    if (outcome.end == TOutcome::NOT_A_BACKUP)
        d_progress->setLabelText(tr("This file is not a backup"));
    else if (d_progress)
        d_progress->hide();
    if (outcome.end == TOutcome::COMPLETE)
        Update_Tree();
}

void TDatabaseDialog::Export()
{
    if (!Is_Ready() || d_summary_table->rowCount() == 0)
        return;
    QSaveFile file(Choose_Export_File());
    if (!Open(&file, tr("Export Summary")))
        return;
    file.write(Backup::Summary_Line(Backup::Summary_Titles()));
    for (int row = 0; row < d_summary_table->rowCount(); ++row)
        file.write(Backup::Summary_Line(Row_Cells(d_summary_table, row)));
    Report(tr("Export Summary"), Put_In_Place(&file, TOutcome()));
}

QString TDatabaseDialog::Choose_Backup_File()
{
    return QFileDialog::getSaveFileName(this, tr("Backup Database"), QString(),
                                        tr("Backup Files (*.backup)"));
}

QString TDatabaseDialog::Choose_Restore_File()
{
    return QFileDialog::getOpenFileName(this, tr("Restore Database"), QString(),
                                        tr("Backup Files (*.backup)"));
}

QString TDatabaseDialog::Choose_Export_File()
{
    return QFileDialog::getSaveFileName(this, tr("Export Summary"), QString(), tr("CSV Files (*.csv)"));
}

QLayout* TDatabaseDialog::Create_Buttons()
{
    d_backup_button = Create_Button(QStringLiteral("backup"), tr("Backup"), &TDatabaseDialog::Backup);
    d_restore_button = Create_Button(QStringLiteral("restore"), tr("Restore"), &TDatabaseDialog::Restore);
    d_load_button = Create_Button(QStringLiteral("load"), tr("Load"), &TDatabaseDialog::Load);
    d_export_button = Create_Button(QStringLiteral("export"), tr("Export Summary"), &TDatabaseDialog::Export);
    d_close_button = Create_Button(QStringLiteral("close"), tr("Close"), nullptr);
    connect(d_close_button, &QPushButton::clicked, this, &QWidget::close);

    auto* row = new QHBoxLayout;
    row->addWidget(d_backup_button);
    row->addWidget(d_restore_button);
    row->addStretch();
    row->addWidget(d_load_button);
    row->addWidget(d_export_button);
    row->addWidget(d_close_button);
    return row;
}

QPushButton* TDatabaseDialog::Create_Button(const QString& name, const QString& text,
                                            void (TDatabaseDialog::*command)())
{
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false);
    if (command)
        connect(button, &QPushButton::clicked, this, command);
    return button;
}

// Nothing may change the database or its connection during a backup or restore.
bool TDatabaseDialog::Is_Ready() const
{
    return d_database.Is_Connected() && !d_busy;
}

// Opens a file to be written. A name typed or clicked in a hurry must not replace the measurements by a text
// about them.
bool TDatabaseDialog::Open(QSaveFile* file, const QString& command)
{
    const QString name = file->fileName();
    if (name.isEmpty())
        return false;
    if (!KeptCopies::Is_Database_Or_Copy(d_database_file, name))
        return WholeFile::Open(file);
    Report(command, {TOutcome::REFUSED, 0, tr("'%1' is the database or a copy of it").arg(name)});
    return false;
}

void TDatabaseDialog::Fit_Columns()
{
    d_tree->resizeColumnToContents(0);
    d_tree->resizeColumnToContents(1);
}

bool TDatabaseDialog::Fail(const QString& error)
{
    d_last_error = error;
    return false;
}

// The sets that the selected items stand for, in the order of selection. A date stands for all of its times,
// so a time that is selected beside its date comes twice.
std::vector<TDatabaseDialog::TKey> TDatabaseDialog::Selected_Keys() const
{
    std::vector<TKey> keys;
    const auto selected = d_tree->selectedItems();
    for (const QTreeWidgetItem* item : selected) {
        if (item->parent())
            keys.emplace_back(item->parent()->text(0), item->text(1));
        for (int i = 0; i < item->childCount(); ++i)
            keys.emplace_back(item->text(0), item->child(i)->text(1));
    }
    return keys;
}

void TDatabaseDialog::Update_Buttons()
{
    const int selected = d_tree->selectedItems().size();
    for (QWidget* widget :
         std::initializer_list<QWidget*>{d_tree, d_backup_button, d_restore_button, d_close_button})
        widget->setEnabled(!d_busy);
    d_load_button->setEnabled(!d_busy && selected == 1 && Selected_Keys().size() == 1);
    d_export_button->setEnabled(!d_busy && selected > 0);
}

void TDatabaseDialog::Set_Busy(bool busy)
{
    d_busy = busy;
    Update_Buttons();
}

// Shows the progress of a work that uses the database, and keeps the user from everything else in the
// meantime. The progress stays on screen.
void TDatabaseDialog::Work(const QString& text, const std::function<void(const TProgress& progress)>& work)
{
    if (!d_progress) {
        d_progress = new TWorkProgress(this);
        d_progress->setObjectName(QStringLiteral("progress"));
        d_progress->setWindowTitle(windowTitle());
    }
    Set_Busy(true);
    d_progress->Begin(text);
    work([this](int done, int all) { d_progress->Set_Done(done, all); });
    d_progress->End();
    Set_Busy(false);
}

// Keeps what the main window is to tell of a command. After a success there is nothing to tell. A command
// that was cancelled leaves what an earlier one has to tell.
void TDatabaseDialog::Report(const QString& command, const TOutcome& outcome)
{
    if (outcome.end == TOutcome::COMPLETE)
        d_failures.remove(command);
    if (outcome.reason.isEmpty())
        return;
    const QString what = outcome.end == TOutcome::REFUSED ? tr("failed")
                         : outcome.end == TOutcome::CUT_SHORT
                             ? tr("was cut short")
                             : tr("left out %1 of the sets").arg(outcome.left_out);
    d_failures.insert(command, QStringLiteral("%1 %2: %3").arg(command, what, outcome.reason));
}
