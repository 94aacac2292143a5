// SPDX-License-Identifier: MIT
#include "databasedialog.h"

#include "backup.h"
#include "numbers.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QSaveFile>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTreeWidget>

#include <limits>

namespace
{

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

QTreeWidget* Create_Tree(const QStringList& titles)
{
    auto* tree = new QTreeWidget;
    tree->setObjectName("entries");
    tree->setHeaderLabels(titles);
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return tree;
}

QTableWidget* Create_Summary_Table(const QStringList& titles)
{
    auto* table = new QTableWidget(0, titles.size());
    table->setObjectName("summary");
    table->setHorizontalHeaderLabels(titles);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
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

void Append_Row(QTableWidget* table, const QStringList& cells)
{
    const int row = table->rowCount();
    table->insertRow(row);
    for (int column = 0; column < cells.size(); ++column) {
        auto* cell = new QTableWidgetItem(cells[column]);
        cell->setTextAlignment(Qt::AlignCenter);
        table->setItem(row, column, cell);
    }
}

QStringList Row_Cells(const QTableWidget* table, int row)
{
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column)
        cells.append(table->item(row, column)->text());
    return cells;
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
    layout->setColumnStretch(1, 3);
    connect(d_tree, &QTreeWidget::itemSelectionChanged, this, &TDatabaseDialog::Selection_Changed);

    setWindowTitle(tr("Database"));
    resize(1201, 601);
    Update_Buttons();
}

bool TDatabaseDialog::Connect_To_Database(const QString& file)
{
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
    if (!d_database.Is_Connected())
        return false;
    if (!d_database.Add_Database_Item(item))
        return Fail(d_database.Last_Error());
    Update_Tree();
    return true;
}

void TDatabaseDialog::reject()
{
    if (!d_busy)
        QDialog::reject();
}

void TDatabaseDialog::Update_Tree()
{
    d_tree->clear();
    if (!d_database.Is_Connected())
        return;
    bool valid = false;
    const QStringList dates = d_database.Date_List(&valid);
    for (const QString& date : dates) {
        auto* date_item = new QTreeWidgetItem(d_tree, {date});
        const QStringList times = d_database.Time_List(date, &valid);
        for (const QString& time : times)
            new QTreeWidgetItem(date_item, {QString(), time});
    }
    d_tree->resizeColumnToContents(0);
    d_tree->resizeColumnToContents(1);
}

void TDatabaseDialog::Selection_Changed()
{
    d_summary_table->setRowCount(0);
    if (!d_database.Is_Connected())
        return;
    Update_Buttons();
    d_summary_table->setUpdatesEnabled(false);
    for (const auto& [date, time] : Selected_Keys()) {
        bool valid = false;
        const TDatabaseItem item = d_database.Database_Item(date, time, &valid);
        if (valid)
            Append_Row(d_summary_table, Summary_Cells(date, time, item));
    }
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
    if (!d_database.Is_Connected())
        return;
    const QString file_name = Choose_Backup_File();
    if (file_name.isEmpty())
        return;
    // The file appears when it is complete, so that an older backup survives a full disk or a killed program.
    QSaveFile file(file_name);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return;
    bool valid = false;
    const QStringList dates = d_database.Date_List(&valid);
    if (!valid)
        return;

    Set_Busy(true);
    const auto done = qScopeGuard([this] { Set_Busy(false); });
    Show_Progress(tr("Writing the backup"), dates.size());
    if (!dates.isEmpty())
        file.write(Backup_File::Header_Line());
    for (int i = 0; i < dates.size(); ++i) {
        Set_Progress(i);
        if (!Write_Date(dates[i], &file)) {
            file.commit(); // half a backup is better than none; the progress left on screen tells
            return;
        }
    }
    d_progress->hide();
    file.commit();
}

void TDatabaseDialog::Restore()
{
    if (!d_database.Is_Connected())
        return;
    const QString file_name = Choose_Restore_File();
    if (file_name.isEmpty())
        return;
    QFile file(file_name);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray content = file.readAll();
    file.close();

    Set_Busy(true);
    const auto done = qScopeGuard([this] { Set_Busy(false); });
    Show_Progress(tr("Restoring the backup"), content.size());
    if (!content.isEmpty()) {
        int position = 0;
        const QByteArray first_line = Backup_File::Next_Line(content, &position);
        if (Backup_File::Read_Line(first_line).kind != Backup_File::TRecord::HEADER)
            return; // the progress left on screen tells that this was no backup
        if (Empty_Database())
            Read_Sets(content, position);
    }
    d_progress->hide();
    Update_Tree();
}

void TDatabaseDialog::Export()
{
    const int rows = d_summary_table->rowCount();
    if (rows == 0)
        return;
    const QString file_name = Choose_Export_File();
    if (file_name.isEmpty())
        return;
    QSaveFile file(file_name);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(Backup_File::Summary_Line(Backup_File::Summary_Titles()));
    for (int row = 0; row < rows; ++row)
        file.write(Backup_File::Summary_Line(Row_Cells(d_summary_table, row)));
    file.commit();
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
    d_backup_button = Create_Button("backup", tr("Backup"), &TDatabaseDialog::Backup);
    d_restore_button = Create_Button("restore", tr("Restore"), &TDatabaseDialog::Restore);
    d_load_button = Create_Button("load", tr("Load"), &TDatabaseDialog::Load);
    d_export_button = Create_Button("export", tr("Export Summary"), &TDatabaseDialog::Export);
    d_close_button = Create_Button("close", tr("Close"), nullptr);
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
    for (QPushButton* button : {d_backup_button, d_restore_button, d_close_button})
        button->setEnabled(!d_busy);
    d_load_button->setEnabled(!d_busy && selected == 1 && Selected_Keys().size() == 1);
    d_export_button->setEnabled(!d_busy && selected > 0);
}

void TDatabaseDialog::Set_Busy(bool busy)
{
    d_busy = busy;
    Update_Buttons();
}

void TDatabaseDialog::Show_Progress(const QString& text, int maximum)
{
    if (!d_progress) {
        auto* cancel = new QPushButton(tr("Cancel"));
        cancel->setEnabled(false);
        d_progress = new QProgressDialog(this);
        d_progress->setObjectName("progress");
        d_progress->setWindowTitle(windowTitle());
        d_progress->setCancelButton(cancel);
        // Shown and hidden here only, never by its own clock or by reaching its end.
        d_progress->setMinimumDuration(std::numeric_limits<int>::max());
        d_progress->setAutoReset(false);
        d_progress->setAutoClose(false);
    }
    d_progress->setLabelText(text);
    d_progress->setMaximum(maximum);
    d_progress->setValue(0);
    d_progress->show();
}

void TDatabaseDialog::Set_Progress(int value)
{
    d_progress->setValue(value);
    QCoreApplication::processEvents();
}

// Writes all sets of a date; those that cannot be read are left out. Returns false where not even their times
// can be read.
bool TDatabaseDialog::Write_Date(const QString& date, QIODevice* file) const
{
    file->write(Backup_File::Date_Line(date));
    bool times_valid = false;
    const QStringList times = d_database.Time_List(date, &times_valid);
    for (const QString& time : times) {
        bool valid = false;
        const TDatabaseItem item = d_database.Database_Item(date, time, &valid);
        if (valid)
            file->write(Backup_File::Time_Line(time) + Backup_File::Position_Lines(item));
    }
    return times_valid;
}

// Deletes all sets after a copy of them was kept. Between the two nobody else gets to work.
bool TDatabaseDialog::Empty_Database()
{
    if (!d_database.Keep_Copy())
        return Fail(d_database.Last_Error());
    d_database.Clear();
    return true;
}

// Stores the sets of a backup file from `position` on. Whatever is no record is passed over.
void TDatabaseDialog::Read_Sets(const QByteArray& content, int position)
{
    using Backup_File::TRecord;
    // Four changes to each set would wait for the disk; after a power failure the copy is there.
    d_database.Set_Bulk_Mode(true);
    const auto done = qScopeGuard([this] { d_database.Set_Bulk_Mode(false); });
    TDatabaseItem pending;
    Set_Progress(position);
    while (position < content.size()) {
        const TRecord record = Backup_File::Read_Line(Backup_File::Next_Line(content, &position));
        if (record.kind == TRecord::POSITION) {
            pending.Add_Ballbar(record.position);
        } else if (record.kind == TRecord::DATE) {
            Store_And_Clear(&pending);
            pending.Set_Date(record.text);
        } else if (record.kind == TRecord::TIME) {
            Store_And_Clear(&pending);
            pending.Set_Time(record.text);
        }
        Set_Progress(position);
    }
    Store_And_Clear(&pending);
}

// A set that cannot be stored does not keep the others from being restored.
void TDatabaseDialog::Store_And_Clear(TDatabaseItem* item)
{
    if (item->Ballbar_Count() == 0)
        return;
    item->Update_Stats();
    d_database.Add_Database_Item(*item);
    item->Clear_Ballbars();
}
