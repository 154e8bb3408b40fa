#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/BarGroup.h"

#include <QLabel>
#include <QWidget>

#include <map>
#include <vector>

namespace quillmoth {

/// The line of hints and controls at the bottom.
class BottomBar final : public QWidget {
public:
    using Item = FloatingViewController::BarItem;

    BottomBar(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    void refresh();
    void setActive(bool active);

    /// What the items need with the smaller gaps, the status left out.
    [[nodiscard]] int leastWidth() const;

    /// The widget of an item, whether it is shown or not.
    [[nodiscard]] QWidget& widgetFor(Item item) const { return *widgets_.at(item); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void addGroup(Item item, BarGroup::Description description);
    void place();
    [[nodiscard]] int widthOf(Item item) const;
    [[nodiscard]] int widthOfItems(bool withStatus, int gap) const;

    std::shared_ptr<FloatingViewController> controller_;
    std::map<Item, QWidget*> widgets_;
    BarSwitch* onTop_ = nullptr;
    QLabel* status_ = nullptr;
    QString statusText_;
    std::vector<Item> items_;
    std::vector<int> separators_;
    /// Whether there is no room for the labels of the buttons.
    bool isNarrow_ = false;
};

} // namespace quillmoth
