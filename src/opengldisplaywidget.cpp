// SPDX-License-Identifier: MIT
#include "opengldisplaywidget.h"

#include "ballbarmeshes.h"
#include "icons.h"
#include "opengldisplay.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QSpacerItem>
#include <QToolButton>

namespace
{

QString Heading(const QString& text)
{
    return QStringLiteral("<p><span style=\" font-weight:500; text-decoration: underline;\">%1</span></p>")
        .arg(text);
}

QString Too_Old_Message(const QString& version_text, const QString& extensions_text)
{
    const QString error =
        TOpenGLDisplayWidget::tr("ERR:  OpenGL version not supported.  No graphical display will be shown.");
    return QStringLiteral("<html><head/><body>"
                          "<p><span style=\" font-weight:700;\">%1</span></p>"
                          "%2<p>%3</p>%4<p>%5</p></body></html>")
        .arg(error, Heading(TOpenGLDisplayWidget::tr("OpenGL Version Text:")), version_text.toHtmlEscaped(),
             Heading(TOpenGLDisplayWidget::tr("OpenGL Extensions:")), extensions_text.toHtmlEscaped());
}

// Text that stays readable on the white frame whatever the desktop's colours are. Each child gets it by
// itself: below a style sheet palettes are not inherited.
QPalette Black_On_White(QPalette palette)
{
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, Qt::black);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Qt::white);
    return palette;
}

// The frame's style sheet has no selector, so it whitens the tool tips too. On a dark desktop their text is
// white: the tips get both colours.
const QString TIP_STYLE = QStringLiteral("QToolTip { color: black; background-color: rgb(255, 255, 220); "
                                         "border: 1px solid black; padding: 1px; }");

} // namespace

TOpenGLDisplayWidget::TOpenGLDisplayWidget(const QWidget* parent, Qt::WindowFlags flags)
    : QFrame(const_cast<QWidget*>(parent), flags)
{
    QString version_text;
    QString extensions_text;
    const int version = TOpenGLWidget::Get_OpenGL_Version_Major(&version_text, &extensions_text);

    setFrameShape(QFrame::Box);
    setStyleSheet(QStringLiteral("background-color: rgb(255, 255, 255);"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setColumnStretch(0, 1);
    if (version < 2)
        Create_Message(layout, Too_Old_Message(version_text, extensions_text));
    else
        Create_View(layout);

    d_scale_to_fit = Add_Button(layout, 0, tr("Scale to Fit"), QStringLiteral("tb_scale_to_fit"));
    d_pan = Add_Button(layout, 1, tr("Pan Mode"), QStringLiteral("tb_pan"));
    d_rotate2d = Add_Button(layout, 2, tr("Rotate 2D Mode"), QStringLiteral("tb_rotate2d"));
    d_rotate3d = Add_Button(layout, 3, tr("Rotate 3D Mode"), QStringLiteral("tb_rotate3d"));
    layout->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), 4, 1);
    for (QToolButton* button : {d_pan, d_rotate2d, d_rotate3d})
        button->setCheckable(true);
    d_pan->setChecked(true);
    connect(d_scale_to_fit, &QToolButton::clicked, this, &TOpenGLDisplayWidget::Scale_To_Fit);
    connect(d_pan, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Pan);
    connect(d_rotate2d, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Rotate2d);
    connect(d_rotate3d, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Rotate3d);
}

void TOpenGLDisplayWidget::Add_BallBar(int index, const QString& name, const TVector3& sphere1,
                                       const TVector3& sphere2, const TVector3& probe, bool first_flag,
                                       bool second_flag)
{
    if (!d_display)
        return;
    TOpenGLDisplay::TBallBar bar;
    bar.index = index;
    bar.name = name;
    bar.first_flag = first_flag;
    bar.second_flag = second_flag;
    bar.sphere1 = sphere1;
    bar.sphere2 = sphere2;
    bar.label = BallBarMeshes::Label_Position(sphere1, sphere2);
    bar.probe = probe;
    d_display->Add_BallBar(bar);
}

void TOpenGLDisplayWidget::Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum)
{
    if (d_display)
        d_display->Define_Machine_Volume(minimum, maximum);
}

void TOpenGLDisplayWidget::Clear_BallBars()
{
    if (d_display)
        d_display->Clear_BallBars();
}

void TOpenGLDisplayWidget::Set_Selection(int index)
{
    if (d_display)
        d_display->Set_Selection(index);
}

void TOpenGLDisplayWidget::Clear_Selection()
{
    if (d_display)
        d_display->Clear_Selection();
}

void TOpenGLDisplayWidget::Update(bool fit)
{
    if (!d_display)
        return;
    if (fit)
        d_display->d_FitRequested = true;
    d_display->update();
}

void TOpenGLDisplayWidget::Scale_To_Fit()
{
    Update(true);
}

void TOpenGLDisplayWidget::Pan(bool)
{
    Set_Mode(d_pan); // also when it was unchecked: one mode is always on
}

void TOpenGLDisplayWidget::Rotate2d(bool checked)
{
    Set_Mode(checked ? d_rotate2d : d_pan);
}

void TOpenGLDisplayWidget::Rotate3d(bool checked)
{
    Set_Mode(checked ? d_rotate3d : d_pan);
}

void TOpenGLDisplayWidget::Model_Item_Clicked(const double&, const double&, const double&, int item)
{
    emit Ballbar_Item_Clicked(item);
}

// A ring in the room that frame and margin leave around the view; its blue is dark enough for the white
// frame on every desktop.
void TOpenGLDisplayWidget::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    if (!d_display || !d_display->hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(QPen(QColor(0, 90, 180), 2));
    painter.drawRect(d_display->geometry().adjusted(-1, -1, 1, 1));
}

bool TOpenGLDisplayWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QFrame::eventFilter(watched, event);
}

void TOpenGLDisplayWidget::Create_Message(QGridLayout* layout, const QString& text)
{
    d_message = new QLabel(text, this);
    d_message->setObjectName(QStringLiteral("message"));
    d_message->setWordWrap(true);
    d_message->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    d_message->setPalette(Black_On_White(d_message->palette()));
    layout->addWidget(d_message, 0, 0, 6, 1);
}

void TOpenGLDisplayWidget::Create_View(QGridLayout* layout)
{
    d_display = new TOpenGLDisplay(this);
    d_display->setObjectName(QStringLiteral("display"));
    d_display->setAccessibleName(tr("Ball bars in the volume of the machine"));
    d_display->installEventFilter(this);
    layout->addWidget(d_display, 0, 0, 6, 1);
    connect(d_display, &TOpenGLWidget::Model_Click_Point, this, &TOpenGLDisplayWidget::Model_Item_Clicked);
}

QToolButton* TOpenGLDisplayWidget::Add_Button(QGridLayout* layout, int row, const QString& tool_tip,
                                              const QString& image)
{
    auto* button = new QToolButton(this);
    button->setObjectName(image);
    button->setMaximumSize(24, 24);
    button->setText(tr("..."));
    button->setIcon(Load_Icon(QStringLiteral(":/toolbar/%1.png").arg(image)));
    button->setToolTip(tool_tip);
    button->setAccessibleName(tool_tip);
    button->setStyleSheet(TIP_STYLE);
    button->setPalette(Black_On_White(button->palette()));
    layout->addWidget(button, row, 1);
    return button;
}

void TOpenGLDisplayWidget::Set_Mode(const QToolButton* mode)
{
    for (QToolButton* button : {d_pan, d_rotate2d, d_rotate3d}) {
        const QSignalBlocker blocker(button);
        button->setChecked(button == mode);
    }
    if (!d_display)
        return;
    d_display->d_PanMode = mode == d_pan;
    d_display->d_Rotate2dMode = mode == d_rotate2d;
    d_display->d_Rotate3dMode = mode == d_rotate3d;
}
