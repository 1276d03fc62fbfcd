// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/icons.h"

#include <array>

#include <QIconEngine>
#include <QPainter>

#include "ui/symbols.h"

namespace sonarith {
namespace {

class SymbolEngine : public QIconEngine {
  public:
    explicit SymbolEngine(Symbol symbol) : symbol_(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / symbolGrid, rect.height() / symbolGrid);
        drawSymbol(*painter, symbol_, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(*this); }
    QString key() const override { return QStringLiteral("sonarith"); }

  private:
    Symbol symbol_;
};

} // namespace

QIcon makeIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

QIcon treeImage(int number) {
    static constexpr std::array symbols = {
        Symbol::collection, Symbol::group,    Symbol::item, Symbol::collectionOpen,
        Symbol::groupOpen,  Symbol::itemOpen, Symbol::disc, Symbol::folder,
        Symbol::playlist,   Symbol::play,     Symbol::stop, Symbol::search,
    };
    if (number < 1 || number > static_cast<int>(symbols.size())) {
        return {};
    }
    return makeIcon(symbols[static_cast<std::size_t>(number - 1)]);
}

} // namespace sonarith
