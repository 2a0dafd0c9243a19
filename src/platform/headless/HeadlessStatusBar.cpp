#include "platform/headless/HeadlessStatusBar.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace tallowbay::headless {

namespace {

class ListedItem final : public StatusItem {
public:
    using Items = std::list<HeadlessStatusBar::Item>;

    ListedItem(Items& items, Items::iterator place)
        : items(items)
        , place(place)
    {
    }
    ~ListedItem() override { items.erase(place); }

private:
    Items& items;
    Items::iterator place;
};

} // namespace

std::unique_ptr<StatusItem> HeadlessStatusBar::makeItem(const StatusButton& button, Menu menu)
{
    items.push_back({button, std::move(menu)});
    return std::make_unique<ListedItem>(items, std::prev(items.end()));
}

// The action may end its item, and with it the menu.
void HeadlessStatusBar::choose(const std::string& title)
{
    const Menu menu = items.back().menu;
    const auto row = std::ranges::find(menu, title, &MenuItem::title);
    if (row == menu.end())
        throw std::logic_error("The menu has no such row");
    if (row->action)
        row->action();
}

void HeadlessStatusBar::middleClick()
{
    const auto action = items.back().button.onMiddleClick;
    if (action)
        action();
}

} // namespace tallowbay::headless
