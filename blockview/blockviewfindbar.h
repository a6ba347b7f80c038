#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

// The small find bar at the foot of a block view: the text to find, next
// and previous, whether the case counts, and what became of the last search.
// Enter and F3 find the next match, with Shift the previous one; Escape
// closes the bar.
class BlockViewFindBar : public QWidget
{
    Q_OBJECT

public:
    // The find field is never narrower than this many characters.
    static constexpr int minimumCharacters = 15;

    explicit BlockViewFindBar(QWidget* parent = nullptr);

    QString text() const;
    bool caseSensitive() const;
    // Shows the bar with the text (when not empty) selected for typing over.
    void open(const QString& text);
    // "Not found" and the like; empty clears it.
    void setStatus(const QString& status);

signals:
    void findRequested(bool backward);
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool handleKey(QKeyEvent* event);
    void dismiss();
    void elideStatus();

    QLineEdit* edit;
    QCheckBox* matchCase;
    QLabel* status;
    QString fullStatus;
};
