#include "apps/demo/PlainView.h"

#include "apps/demo/Day.h"
#include "apps/demo/Summary.h"

namespace quorvane {

int showPlainDay(const DayPlan& plan, Charset charset, std::FILE* output) {
    const auto write = [charset, output](const QString& line) {
        std::fputs(encoded(line + u'\n', charset).constData(), output);
    };
    Day day(plan, [&write](const DemoEvent& event) { write(eventLine(event)); });
    day.begin();
    day.finish();
    write({});
    for (const QString& line : closingWords(day.result())) {
        write(line);
    }
    if (std::fflush(output) != 0 || std::ferror(output) != 0) {
        std::fputs("quorvane-demo: the output could not be written\n", stderr);
        return 1;
    }
    return 0;
}

} // namespace quorvane
