#include "qt/status_panel_label.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QPainter>
#include <QSizePolicy>

#include <algorithm>

namespace zv::qt {

namespace {

constexpr int kMargin = 4;
constexpr int kIconGap = 3;
// A squeezed panel keeps a short text whole and elides a longer one down to about this many
// characters, so that the short panels (cells, port, polling, logging, access) stay readable.
constexpr int kKeptCharacters = 16;

} // namespace

StatusPanelLabel::StatusPanelLabel(int widthPixels, QWidget* parent)
    : QWidget(parent)
    , widthPixels_(widthPixels)
{
    setSizePolicy(widthPixels > 0 ? QSizePolicy::Preferred : QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void StatusPanelLabel::setText(const QString& text)
{
    if (text == text_)
        return;
    text_ = text;
    // The text is painted, so screen readers and test tools learn it from these two.
    setAccessibleName(text);
    setAccessibleDescription(text);
    updateGeometry();
    update();
}

void StatusPanelLabel::setIcon(const QPixmap& icon)
{
    const bool roomChanged = icon.isNull() != icon_.isNull();
    icon_ = icon;
    if (roomChanged)
        updateGeometry();
    update();
}

int StatusPanelLabel::iconRoom() const
{
    return icon_.isNull() ? 0 : static_cast<int>(icon_.deviceIndependentSize().width()) + kIconGap;
}

int StatusPanelLabel::textWidth() const
{
    return std::max(0, width() - 2 * kMargin - iconRoom());
}

QString StatusPanelLabel::shownText() const
{
    return fontMetrics().elidedText(text_, Qt::ElideRight, textWidth());
}

QSize StatusPanelLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int wanted
        = widthPixels_ > 0 ? widthPixels_ : 2 * kMargin + iconRoom() + metrics.horizontalAdvance(text_);
    return { wanted, std::max(metrics.height(), 16) + 2 };
}

QSize StatusPanelLabel::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int kept = std::min(metrics.horizontalAdvance(text_), kKeptCharacters * metrics.averageCharWidth());
    const int least = 2 * kMargin + iconRoom() + kept;
    return { std::min(least, sizeHint().width()), sizeHint().height() };
}

void StatusPanelLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int x = kMargin;
    if (!icon_.isNull()) {
        const QSize size = icon_.deviceIndependentSize().toSize();
        painter.drawPixmap(x, (height() - size.height()) / 2, icon_);
        x += size.width() + kIconGap;
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(x, 0, textWidth(), height()), Qt::AlignVCenter | Qt::AlignLeft, shownText());
}

} // namespace zv::qt
