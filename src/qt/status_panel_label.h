#pragma once
// One panel of the status bar: an optional icon, then the text, elided at the right when the
// panel is narrower than its text, so that panels never run over each other. A panel asks for
// its own width (or its text's, when it takes the room that is left); on a narrow window a short
// text stays whole and a long one is elided down to a few words. The whole text is also the
// panel's accessible name and description.

#include <QPixmap>
#include <QString>
#include <QWidget>

namespace zv::qt {

class StatusPanelLabel : public QWidget {
public:
    // widthPixels 0: the panel asks for its text's width.
    StatusPanelLabel(int widthPixels, QWidget* parent);

    void setText(const QString& text);
    [[nodiscard]] const QString& text() const { return text_; }
    void setIcon(const QPixmap& icon);
    // The text as it is drawn at the present width.
    [[nodiscard]] QString shownText() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int iconRoom() const;
    [[nodiscard]] int textWidth() const;

    int widthPixels_;
    QString text_;
    QPixmap icon_;
};

} // namespace zv::qt
