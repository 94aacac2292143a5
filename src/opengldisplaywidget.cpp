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

/// Text that stays readable on the white frame whatever the desktop's colours are. Each child gets it by
/// itself: below a style sheet palettes are not inherited.
QPalette Black_On_White(QPalette palette)
{
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, Qt::black);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Qt::white);
    return palette;
}

/// The frame's style sheet has no selector and whitens the tips of its buttons too, whose text may be white
/// on the desktop: both colours of theirs.
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

    d_ScaleToFit = Add_Button(layout, 0, tr("Scale to Fit"), QStringLiteral("tb_scale_to_fit"));
    d_Pan = Add_Button(layout, 1, tr("Pan Mode"), QStringLiteral("tb_pan"));
    d_Rotate2d = Add_Button(layout, 2, tr("Rotate 2D Mode"), QStringLiteral("tb_rotate2d"));
    d_Rotate3d = Add_Button(layout, 3, tr("Rotate 3D Mode"), QStringLiteral("tb_rotate3d"));
    layout->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), 4, 1);
    for (QToolButton* button : {d_Pan, d_Rotate2d, d_Rotate3d})
        button->setCheckable(true);
    d_Pan->setChecked(true);
    connect(d_ScaleToFit, &QToolButton::clicked, this, &TOpenGLDisplayWidget::Scale_To_Fit);
    connect(d_Pan, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Pan);
    connect(d_Rotate2d, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Rotate2d);
    connect(d_Rotate3d, &QToolButton::toggled, this, &TOpenGLDisplayWidget::Rotate3d);
}

void TOpenGLDisplayWidget::Add_BallBar(int index, const QString& name, const TVector3& sphere1,
                                       const TVector3& sphere2, const TVector3& probe, bool first_flag,
                                       bool second_flag)
{
    if (!d_Display)
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
    d_Display->Add_BallBar(bar);
}

void TOpenGLDisplayWidget::Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum)
{
    if (d_Display)
        d_Display->Define_Machine_Volume(minimum, maximum);
}

void TOpenGLDisplayWidget::Clear_BallBars()
{
    if (d_Display)
        d_Display->Clear_BallBars();
}

void TOpenGLDisplayWidget::Set_Selection(int index)
{
    if (d_Display)
        d_Display->Set_Selection(index);
}

void TOpenGLDisplayWidget::Clear_Selection()
{
    if (d_Display)
        d_Display->Clear_Selection();
}

void TOpenGLDisplayWidget::Update(bool fit)
{
    if (!d_Display)
        return;
    if (fit)
        d_Display->d_FitRequested = true;
    d_Display->update();
}

void TOpenGLDisplayWidget::Scale_To_Fit()
{
    Update(true);
}

void TOpenGLDisplayWidget::Pan(bool)
{
    Set_Mode(d_Pan); // also when it was unchecked: one mode is always on
}

void TOpenGLDisplayWidget::Rotate2d(bool checked)
{
    Set_Mode(checked ? d_Rotate2d : d_Pan);
}

void TOpenGLDisplayWidget::Rotate3d(bool checked)
{
    Set_Mode(checked ? d_Rotate3d : d_Pan);
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
    if (!d_Display || !d_Display->hasFocus())
        return;
    QPainter painter(this);
    painter.setPen(QPen(QColor(0, 90, 180), 2));
    painter.drawRect(d_Display->geometry().adjusted(-1, -1, 1, 1));
}

bool TOpenGLDisplayWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QFrame::eventFilter(watched, event);
}

void TOpenGLDisplayWidget::Create_Message(QGridLayout* layout, const QString& text)
{
    d_Message = new QLabel(text, this);
    d_Message->setObjectName(QStringLiteral("message"));
    d_Message->setWordWrap(true);
    d_Message->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    d_Message->setPalette(Black_On_White(d_Message->palette()));
    layout->addWidget(d_Message, 0, 0, 6, 1);
}

void TOpenGLDisplayWidget::Create_View(QGridLayout* layout)
{
    d_Display = new TOpenGLDisplay(this);
    d_Display->setObjectName(QStringLiteral("display"));
    d_Display->setAccessibleName(tr("Ball bars in the volume of the machine"));
    d_Display->installEventFilter(this);
    layout->addWidget(d_Display, 0, 0, 6, 1);
    connect(d_Display, &TOpenGLWidget::Model_Click_Point, this, &TOpenGLDisplayWidget::Model_Item_Clicked);
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
    for (QToolButton* button : {d_Pan, d_Rotate2d, d_Rotate3d}) {
        const QSignalBlocker blocker(button);
        button->setChecked(button == mode);
    }
    if (!d_Display)
        return;
    d_Display->d_PanMode = mode == d_Pan;
    d_Display->d_Rotate2dMode = mode == d_Rotate2d;
    d_Display->d_Rotate3dMode = mode == d_Rotate3d;
}
