#include "platform/simulated/SimulatedStatusBar.h"

namespace quorvane {

class SimulatedStatusBar::Item final : public StatusItem {
  public:
    explicit Item(SimulatedStatusBar& bar) : bar_(bar) { ++bar_.itemCount_; }

    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    ~Item() override { --bar_.itemCount_; }

    void setMenu(Menu& menu) override {
        note("menu");
        bar_.look_.menu = &menu;
    }

    void setAttributedTitle(const AttributedString& title) override {
        note("title");
        bar_.look_.title = title;
    }

    void setLength(double length) override {
        note("length");
        bar_.look_.length = length;
    }

    void setImage(const QString& name) override {
        note("image");
        bar_.look_.image = name;
    }

    void setTemplate(bool isTemplate) override {
        note("template");
        bar_.look_.isTemplate = isTemplate;
    }

    void setImagePosition(ImagePosition position) override {
        note("position");
        bar_.look_.imagePosition = position;
    }

  private:
    void note(const char* call) { bar_.calls_.append(QString::fromLatin1(call)); }

    SimulatedStatusBar& bar_;
};

std::unique_ptr<StatusItem> SimulatedStatusBar::statusItemWithLength(double length) {
    look_ = {};
    look_.length = length;
    return std::make_unique<Item>(*this);
}

} // namespace quorvane
