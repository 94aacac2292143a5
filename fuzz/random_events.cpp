// SPDX-License-Identifier: MIT
// Sends random events to the real main window, in a home directory of its own:
//
//     random_events [COUNT [SEED]]
//
// The same seed sends the same events. Whatever a user can do comes up: mouse, keys, wheel, drops, menu
// commands, answers to dialogs, typing, resizing. Ends with 1 if Qt or the program printed a message.
#include "kelvora.h"
#include "openglwidget.h"

#include <QtWidgets>

#include <iostream>
#include <memory>
#include <random>

namespace
{

int messages = 0;

void Count_Message(QtMsgType, const QMessageLogContext& context, const QString& text)
{
    // A window that is hidden before the X server has shown it cannot be given the focus.
    if (qstrcmp(context.category, "qt.qpa.xcb") == 0 && text.contains("SetInputFocus"))
        return;
    ++messages;
    std::cerr << text.toStdString() << std::endl;
}

/// Every choice comes from one generator.
class TRandom
{
public:
    explicit TRandom(unsigned seed) : d_engine(seed) {}

    /// 0 to `limit` - 1.
    int Below(int limit) { return static_cast<int>(d_engine() % static_cast<unsigned>(qMax(1, limit))); }
    bool One_In(int count) { return Below(count) == 0; }
    template<typename T> decltype(auto) Of(T& list) { return list[Below(static_cast<int>(std::size(list)))]; }
    template<typename T> T Of(std::initializer_list<T> list)
    {
        return list.begin()[Below(static_cast<int>(list.size()))];
    }
    QPoint Point(const QSize& size) { return {Below(size.width()), Below(size.height())}; }
    Qt::MouseButton Button()
    {
        return Of({Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
    }
    Qt::KeyboardModifiers Modifiers()
    {
        return Of({Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier,
                   Qt::AltModifier});
    }
    /// A number of any magnitude, or something that only looks like one.
    QString Number()
    {
        const double value = (Below(2001) - 1000) * std::pow(10.0, Below(One_In(8) ? 300 : 5) - 3);
        return One_In(20) ? Of({"nan", "-inf", "1e999", "", "0x1F", "1,5", "--1"})
                          : QString::number(value, 'g', 12);
    }
    QString Text(const QString& letters, int length)
    {
        QString text;
        for (int i = Below(length); i > 0; --i)
            text += Of(letters);
        return text;
    }

private:
    std::mt19937 d_engine;
};

/// Measurement files and backups, good and bad, in a directory of their own.
class TFiles
{
public:
    TFiles(const QString& directory, TRandom* random) : d_directory(directory), d_random(*random)
    {
        QDir(directory).mkpath("a directory.dat");
        for (int i = 0; i < 60; ++i)
            Write(i);
    }
    /// The path of a file, at times of none.
    QString Any() { return d_directory + "/" + Name(d_random.Below(64)); }

private:
    QString Name(int i) const
    {
        return i == 60 ? QString("a directory.dat") : QString("file %1%2").arg(i).arg(i % 2 ? ".dat" : "");
    }
    void Write(int i)
    {
        QFile file(d_directory + "/" + Name(i));
        file.open(QIODevice::WriteOnly);
        file.write(i % 6 == 5 ? Backup() : Damaged(Measurement(), i % 3 == 0));
    }
    QByteArray Measurement()
    {
        const bool old = d_random.One_In(3);
        QByteArray content =
            old ? "BallBar_V1\n" : d_random.Of({"BallBar_V2\n", "B89.4.1_Data:Version=1:Type=BallBar\n"});
        const bool absurd = d_random.One_In(3);
        for (int i = d_random.Of({0, 1, 2, 9, 30, 200}); i > 0; --i) {
            QStringList fields{d_random.Text("Position 0123<>%&'", 40), ""};
            while (fields.size() < (old ? 11 : 13))
                fields << (absurd ? d_random.Number() : QString::number(d_random.Below(2000)));
            content += fields.join(',').toLatin1() + "\n";
        }
        return content;
    }
    QByteArray Backup()
    {
        QByteArray content = "Kelvora_Data:Version=1:Type=Backup\n";
        for (int i = d_random.Below(20); i > 0; --i)
            content += d_random.Of({"Entry_Date:2026 Nov 0", "Entry_Time:10:00:0",
                                    "Entry:P,1,2,3,400,500,6,0.002,0.001,0,0,"}) +
                       QByteArray::number(i) + "\n";
        return content;
    }
    QByteArray Damaged(QByteArray content, bool damaged)
    {
        for (int i = d_random.Below(damaged ? 5 : 1); i > 0; --i)
            content[d_random.Below(content.size())] = static_cast<char>(d_random.Below(256));
        return content;
    }

    QString d_directory;
    TRandom& d_random;
};

class TWindow : public TKelvora
{
public:
    explicit TWindow(TFiles* files) : d_files(*files) {}

protected:
    QString Choose_Measurement_File(const QString&) override { return d_files.Any(); }

private:
    TFiles& d_files;
};

/// Sends one event after the other, also while a dialog runs its own event loop.
class TEvents : public QObject
{
public:
    TEvents(int count, unsigned seed, const QString& directory)
        : d_count(count), d_random(seed), d_files(directory, &d_random)
    {
        New_Window();
        startTimer(0);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        killTimer(event->timerId());
        if (d_sent == d_count) {
            QApplication::exit();
            return;
        }
        startTimer(0); // a new one: it also comes in the event loop of a dialog that this event opens
        if (++d_sent % 10000 == 0)
            std::cout << d_sent << " events" << std::endl;
        ++d_depth;
        Send();
        --d_depth;
    }

private:
    using TAction = void (TEvents::*)(QWidget* window);

    void New_Window()
    {
        d_window.reset(); // one at a time holds the database
        d_window = std::make_unique<TWindow>(&d_files);
        d_window->show();
    }

    void Send()
    {
        if (!d_window->isVisible()) { // Quit
            if (d_depth == 1)
                New_Window();
            else
                d_window->show();
        }
        QWidget* window = Window();
        if (auto* dialog = qobject_cast<QFileDialog*>(window)) {
            Answer(dialog);
            return;
        }
        const TAction anywhere[] = {&TEvents::Press, &TEvents::Press, &TEvents::Press, &TEvents::Drag,
                                    &TEvents::Drag,  &TEvents::Move,  &TEvents::Wheel, &TEvents::Key,
                                    &TEvents::Key,   &TEvents::Key,   &TEvents::Drop,  &TEvents::Resize,
                                    &TEvents::Click, &TEvents::Menu,  &TEvents::Leave, &TEvents::Type};
        if (window == d_window.get() || d_random.One_In(3)) {
            (this->*d_random.Of(anywhere))(window);
        } else {
            const TAction in_dialog[] = {&TEvents::Click, &TEvents::Press, &TEvents::Key, &TEvents::Select};
            (this->*d_random.Of(in_dialog))(window);
        }
        if (window != d_window.get() && d_random.One_In(30))
            window->close();
    }

    /// The window that a user could reach now.
    QWidget* Window()
    {
        if (QWidget* popup = QApplication::activePopupWidget())
            return popup;
        QWidget* modal = QApplication::activeModalWidget();
        QWidget* top = modal != nullptr ? modal : d_window.get();
        if (qobject_cast<QFileDialog*>(top) == nullptr && d_random.One_In(4)) {
            QList<QWidget*> windows;
            for (auto* child : top->findChildren<QWidget*>())
                if (child->isWindow() && child->isVisible())
                    windows << child;
            if (!windows.isEmpty())
                return d_random.Of(windows);
        }
        return top;
    }

    QWidget* Target(QWidget* window)
    {
        QList<QWidget*> widgets{window};
        for (auto* child : window->findChildren<QWidget*>())
            if (child->isVisible() && child->window() == window)
                widgets << child;
        return d_random.Of(widgets);
    }

    /// Names a file of its own directory and no other: nothing else is to be written over.
    void Answer(QFileDialog* dialog)
    {
        if (d_random.One_In(3)) {
            dialog->reject();
            return;
        }
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        dialog->findChild<QLineEdit*>()->setText(d_files.Any());
        static_cast<QDialog*>(dialog)->accept();
    }

    void Mouse(QEvent::Type type, QWidget* widget, const QPoint& point, Qt::MouseButton button,
               Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent event(type, point, widget->mapToGlobal(point), button, buttons, modifiers);
        QApplication::sendEvent(widget, &event);
    }

    void Press(QWidget* window)
    {
        const QPointer<QWidget> target = Target(window);
        const QPoint point = d_random.Point(target->size());
        const Qt::MouseButton button = d_random.Button();
        const auto modifiers = d_random.Modifiers();
        Mouse(d_random.One_In(5) ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, target, point,
              button, button, modifiers);
        if (target != nullptr && button == Qt::RightButton && d_random.One_In(3)) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, point, target->mapToGlobal(point));
            QApplication::sendEvent(target, &menu);
        }
        if (target != nullptr && !d_random.One_In(20)) // at times the release is lost
            Mouse(QEvent::MouseButtonRelease, target, point, button, Qt::NoButton, modifiers);
    }

    void Drag(QWidget* window)
    {
        const QPointer<QWidget> target = Target(window);
        const Qt::MouseButton button = d_random.Button();
        const auto modifiers = d_random.Modifiers();
        QPoint point = d_random.Point(target->size());
        Mouse(QEvent::MouseButtonPress, target, point, button, button, modifiers);
        for (int i = d_random.Below(4); i >= 0 && target != nullptr; --i) {
            point += d_random.Point({200, 200}) - QPoint(100, 100);
            Mouse(QEvent::MouseMove, target, point, Qt::NoButton,
                  d_random.One_In(9) ? button | Qt::RightButton : button, modifiers);
        }
        if (target != nullptr)
            Mouse(QEvent::MouseButtonRelease, target, point, button, Qt::NoButton, modifiers);
    }

    void Move(QWidget* window)
    {
        QWidget* target = Target(window);
        Mouse(QEvent::MouseMove, target, d_random.Point(target->size()), Qt::NoButton, Qt::NoButton,
              d_random.Modifiers());
    }

    void Wheel(QWidget* window)
    {
        QWidget* target = Target(window);
        const QPointF point = d_random.Point(target->size());
        QWheelEvent event(point, target->mapToGlobal(point.toPoint()), QPoint(),
                          QPoint(0, d_random.Of({120, -120, 1, -3, 960, -960})), Qt::NoButton,
                          d_random.Modifiers(), Qt::NoScrollPhase, false);
        QApplication::sendEvent(target, &event);
    }

    void Press_Key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text)
    {
        const QPointer<QWidget> target = widget;
        for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            if (target != nullptr)
                QApplication::sendEvent(target, &event);
        }
    }

    void Key(QWidget* window)
    {
        const int keys[] = {Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space,
                            Qt::Key_Up,   Qt::Key_Down,    Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Home,
                            Qt::Key_End,  Qt::Key_PageUp,  Qt::Key_Delete, Qt::Key_Menu,   Qt::Key_Backspace,
                            Qt::Key_A,    Qt::Key_C,       Qt::Key_V,      Qt::Key_X,      Qt::Key_Z,
                            Qt::Key_Plus, Qt::Key_F10,     Qt::Key_Alt,    Qt::Key_1,      Qt::Key_Period};
        QWidget* focus = QApplication::focusWidget();
        const int key = d_random.Of(keys);
        const QString text = key > 32 && key < 127 ? QString(QChar(key)) : QString();
        Press_Key(focus != nullptr && focus->window() == window ? focus : Target(window), key,
                  d_random.Modifiers(), text);
    }

    /// Writes into a field of the window, letter by letter.
    void Type(QWidget* window)
    {
        auto fields = window->findChildren<QLineEdit*>();
        if (fields.isEmpty())
            return;
        QLineEdit* field = d_random.One_In(2) ? fields.last() : d_random.Of(fields);
        if (auto* expression = window->findChild<QLineEdit*>("expression"); d_random.One_In(2) && expression)
            field = expression;
        const QString text =
            d_random.Of({d_random.Number(), d_random.Text("0123456789.+L/| ,lx", 30),
                         QString("0.0%1 + 0.0%2L/%3").arg(d_random.Below(30)).arg(3).arg(900)});
        if (d_random.One_In(2))
            field->selectAll();
        for (const QChar letter : text)
            Press_Key(field, letter.toUpper().unicode(), Qt::NoModifier, letter);
    }

    void Drop(QWidget* window)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (int i = d_random.Of({0, 1, 1, 1, 1, 2}); i > 0; --i)
            urls << (d_random.One_In(9) ? QUrl("http://example.org/a.dat")
                                        : QUrl::fromLocalFile(d_files.Any()));
        d_random.One_In(9) ? data.setText("words") : data.setUrls(urls);
        QWidget* target = d_random.One_In(2) ? d_window.get() : Target(window);
        const QPoint point = d_random.Point(target->size());
        const Qt::DropActions actions = d_random.Of({Qt::CopyAction, Qt::MoveAction, Qt::LinkAction});
        QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        if (d_random.One_In(6)) {
            QDragLeaveEvent leave;
            QApplication::sendEvent(target, &leave);
            return;
        }
        QDropEvent drop(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &drop);
    }

    void Resize(QWidget* window)
    {
        if (window == d_window.get())
            window->resize(d_random.Of({300, 1001, 1366}) + d_random.Below(200),
                           d_random.Of({200, 600, 801}) + d_random.Below(200));
        else if (d_random.One_In(2))
            window->resize(d_random.Point({1300, 900}).x(), 100 + d_random.Below(800));
        if (auto* splitter = window->findChild<QSplitter*>("splitter"); splitter && d_random.One_In(2))
            splitter->setSizes({d_random.Below(600), d_random.Below(600)});
    }

    void Click(QWidget* window)
    {
        QList<QAbstractButton*> buttons;
        for (auto* button : window->findChildren<QAbstractButton*>())
            if (button->isVisible() && button->isEnabled() && button->window() == window)
                buttons << button;
        if (!buttons.isEmpty())
            d_random.Of(buttons)->click();
    }

    void Menu(QWidget* window)
    {
        const auto actions = window->findChildren<QAction*>();
        if (actions.isEmpty())
            return;
        QAction* action = d_random.Of(actions);
        if (action->text() != "Quit" || d_random.One_In(20))
            action->trigger();
    }

    /// Selects dates and times of the database window.
    void Select(QWidget* window)
    {
        auto* tree = window->findChild<QTreeWidget*>("entries");
        if (tree == nullptr || tree->topLevelItemCount() == 0)
            return;
        QTreeWidgetItem* item = tree->topLevelItem(d_random.Below(tree->topLevelItemCount()));
        if (item->childCount() > 0 && d_random.One_In(2))
            item = item->child(d_random.Below(item->childCount()));
        item->setSelected(!d_random.One_In(3));
    }

    void Leave(QWidget* window)
    {
        QEvent event(d_random.Of({QEvent::Leave, QEvent::WindowDeactivate, QEvent::WindowActivate}));
        QApplication::sendEvent(Target(window), &event);
        QApplication::clipboard()->setText(d_random.Number());
    }

    int d_count;
    int d_sent{0};
    int d_depth{0};
    TRandom d_random;
    TFiles d_files;
    std::unique_ptr<TWindow> d_window;
};

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
        qputenv(variable, home.path().toLocal8Bit());
    qputenv("QT_HASH_SEED", "0");
    qInstallMessageHandler(Count_Message);
    Q_INIT_RESOURCE(kelvora);
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setStyle("fusion");
    QApplication::setQuitOnLastWindowClosed(false);
    const int count = argc > 1 ? atoi(argv[1]) : 100000;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(atoi(argv[2])) : 1;
    {
        TEvents events(count, seed, home.filePath("files"));
        QApplication::exec();
    }
    std::cout << count << " events with seed " << seed << ", " << messages << " messages" << std::endl;
    return messages == 0 ? 0 : 1;
}
