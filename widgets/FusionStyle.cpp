// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/FusionStyle.h"

#include "widgets/Contrast.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include <array>
#include <memory>
#include <utility>

namespace brevant {

namespace {

const QString fusion = QStringLiteral("fusion");

enum class Shape { Box, Circle };

void drawLine(QPainter &painter, const QRect &rect, Shape shape, const QColor &colour, double width)
{
    const double half = width / 2;
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    const QRectF line = QRectF(rect).adjusted(half, half, -half, -half);
    painter.setRenderHint(QPainter::Antialiasing, shape == Shape::Circle);
    if (shape == Shape::Circle)
        painter.drawEllipse(line);
    else
        painter.drawRect(line);
    painter.restore();
}

void outline(QPainter &painter, const QStyleOption &option, const QRect &rect, Shape shape)
{
    if (!isHighContrast(option.palette))
        return;
    const auto *const button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    const bool isDefault = button && button->features.testFlag(QStyleOptionButton::DefaultButton);
    const bool isChosenTab =
        qstyleoption_cast<const QStyleOptionTab *>(&option) && option.state.testFlag(QStyle::State_Selected);
    const bool stands = isDefault || isChosenTab || option.state.testFlag(QStyle::State_HasFocus);
    const auto group = option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    drawLine(painter, rect, shape,
             option.palette.color(group, stands ? QPalette::Highlight : QPalette::WindowText),
             stands ? 2 : 1);
}

/// The box of a check box or a radio button.
void outlineIndicator(QPainter &painter, const QStyleOption &option, Shape shape)
{
    const QColor ground = option.palette.color(QPalette::Window);
    const QColor text = option.palette.color(QPalette::WindowText);
    if (isHighContrast(option.palette)) {
        outline(painter, option, option.rect, shape);
    } else if (ground.lightness() < text.lightness()) {
        const bool marked =
            option.state.testFlags(QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange);
        const QColor line = marked ? option.palette.color(QPalette::Highlight) : ground;
        drawLine(painter, option.rect, shape, readableOn(ground, text, line, visibleContrast), 1);
    }
}

/// An icon of the style that is read when it is first drawn.
class LateIcon final : public QIconEngine {
public:
    explicit LateIcon(QStyle::StandardPixmap which) : m_which(which) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, 1, mode, state);
    }

    [[nodiscard]] QIconEngine *clone() const override { return new LateIcon(m_which); }

private:
    const QIcon &icon()
    {
        if (m_icon.isNull())
            m_icon = std::unique_ptr<QStyle>(QStyleFactory::create(fusion))->standardIcon(m_which);
        return m_icon;
    }

    QStyle::StandardPixmap m_which;
    QIcon m_icon;
};

} // namespace

FusionStyle::FusionStyle() : QProxyStyle(fusion) {}

void FusionStyle::install()
{
    if (QApplication::style()->name() == fusion && !qobject_cast<FusionStyle *>(QApplication::style()))
        QApplication::setStyle(new FusionStyle); // the application's
}

QIcon FusionStyle::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    if (which == SP_ToolBarHorizontalExtensionButton)
        return QIcon(new LateIcon(which)); // the icon's
    return QProxyStyle::standardIcon(which, option, widget);
}

void FusionStyle::polish(QPalette &palette)
{
    QProxyStyle::polish(palette);
    if (!isHighContrast(palette))
        return;
    constexpr std::array<std::pair<QPalette::ColorRole, QPalette::ColorRole>, 3> textsOnGrounds{
        {{QPalette::WindowText, QPalette::Window},
         {QPalette::Text, QPalette::Base},
         {QPalette::ButtonText, QPalette::Button}}};
    for (const auto &[text, ground] : textsOnGrounds)
        palette.setColor(QPalette::Disabled, text,
                         readableOn(palette.color(QPalette::Disabled, ground),
                                    palette.color(QPalette::Active, text),
                                    palette.color(QPalette::Disabled, text), readableContrast));
}

void FusionStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_IndicatorCheckBox:
        outlineIndicator(*painter, *option, Shape::Box);
        break;
    case PE_IndicatorRadioButton:
        outlineIndicator(*painter, *option, Shape::Circle);
        break;
    case PE_PanelButtonCommand:
        outline(*painter, *option, option->rect, Shape::Box);
        if (option->state.testFlags(State_HasFocus | State_KeyboardFocusChange))
            drawLine(*painter, option->rect.adjusted(2, 2, -2, -2), Shape::Box,
                     option->palette.color(QPalette::ButtonText), 1);
        break;
    case PE_FrameTabBarBase:
        if (isHighContrast(option->palette))
            painter->fillRect(QRect(option->rect.topLeft(), QSize(option->rect.width(), 1)),
                              option->palette.color(QPalette::WindowText));
        break;
    case PE_PanelLineEdit:
        outline(*painter, *option, option->rect, Shape::Box);
        break;
    default:
        break;
    }
}

void FusionStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_TabBarTabShape)
        outline(*painter, *option, option->rect, Shape::Box);
}

void FusionStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox)
        outline(*painter, *option, option->rect, Shape::Box);
    else if (control == CC_ScrollBar)
        outline(*painter, *option, subControlRect(control, option, SC_ScrollBarSlider, widget), Shape::Box);
}

} // namespace brevant
