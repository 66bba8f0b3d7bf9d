#include "apps/demo/PictureStyle.h"

namespace quorvane {

namespace {

constexpr Glyphs lineDrawing{
    u'╭', u'╮', u'╰', u'╯', u'─', u'│', u'╱', u'╲', u'▄', u'▔',
    u'━', u'▌', u'━', u'●', u'○', u'█', u'░', u'▲', u'…', {u' ', u'░', u'▒', u'▓', u'█'}};

constexpr Glyphs typewriter{
    u'+', u'+', u'+', u'+', u'-', u'|', u'/', u'\\', u'o', u'=',
    u'=', u']', u'-', u'*', u'o', u'#', u'.', u'^',  u'~', {u' ', u'.', u':', u'+', u'#'}};

} // namespace

const Glyphs& PictureStyle::glyphs() const {
    return charset == Charset::Utf8 ? lineDrawing : typewriter;
}

QString PictureStyle::shown(const QString& text) const {
    return charset == Charset::Utf8 ? text : asciiOnly(text);
}

QString PictureStyle::shown(const QString& text, int width) const {
    QString whole = shown(text);
    if (whole.size() <= width) {
        return whole;
    }
    return whole.left(std::max(width - 1, 0)) + QChar(glyphs().more);
}

void drawFrame(Canvas& canvas, const QRect& frame, const Glyphs& glyphs, const Style& style) {
    canvas.fill({frame.left(), frame.top(), frame.width(), 1}, glyphs.horizontal, style);
    canvas.fill({frame.left(), frame.bottom(), frame.width(), 1}, glyphs.horizontal, style);
    canvas.fill({frame.left(), frame.top(), 1, frame.height()}, glyphs.vertical, style);
    canvas.fill({frame.right(), frame.top(), 1, frame.height()}, glyphs.vertical, style);
    canvas.put(frame.left(), frame.top(), glyphs.topLeft, style);
    canvas.put(frame.right(), frame.top(), glyphs.topRight, style);
    canvas.put(frame.left(), frame.bottom(), glyphs.bottomLeft, style);
    canvas.put(frame.right(), frame.bottom(), glyphs.bottomRight, style);
}

} // namespace quorvane
