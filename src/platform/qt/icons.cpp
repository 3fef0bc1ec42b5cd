#include "platform/qt/icons.h"

#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QMimeDatabase>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <memory>
#include <vector>

namespace platform {

namespace {

constexpr int kGenericFile = 309;

std::vector<QIcon>& Table() {
  static std::vector<QIcon> table(1);
  return table;
}

Icon Add(const QIcon& icon) {
  Table().push_back(icon);
  return static_cast<Icon>(Table().size() - 1);
}

/// The strokes are dark: on the blue of a selected row they need something light behind them.
void DrawPlate(QPainter& painter, const QRect& place) {
  constexpr int kRadius = 3;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 255, 255, 230));
  painter.drawRoundedRect(place, kRadius, kRadius);
}

/// Draws the SVG at the size and scale that is asked for; a disabled icon is paled.
class SvgEngine : public QIconEngine {
 public:
  explicit SvgEngine(std::shared_ptr<QSvgRenderer> drawing) : renderer(std::move(drawing)) {}
  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
    if (mode == QIcon::Disabled) painter->setOpacity(0.35);
    if (mode == QIcon::Selected) DrawPlate(*painter, place);
    renderer->render(painter, place);
    painter->setOpacity(1.0);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap image(size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return image;
  }
  QIconEngine* clone() const override { return new SvgEngine(renderer); }

 private:
  std::shared_ptr<QSvgRenderer> renderer;
};

}  // namespace

const QIcon& QIconOf(Icon icon) {
  const auto index = static_cast<size_t>(icon);
  return icon > 0 && index < Table().size() ? Table()[index] : Table()[0];
}

Icon IconFromResource(int number) {
  static QHash<int, Icon> loaded;
  if (const auto found = loaded.constFind(number); found != loaded.constEnd()) return *found;
  const QString path = QStringLiteral(":/icons/%1.svg").arg(number);
  Icon icon = 0;
  if (QFile::exists(path)) icon = Add(QIcon(new SvgEngine(std::make_shared<QSvgRenderer>(path))));
  loaded.insert(number, icon);
  return icon;
}

Icon IconForFileName(const char* name) {
  static QMimeDatabase types;
  static QHash<QString, Icon> byTheme;
  const QMimeType type = types.mimeTypeForFile(QString::fromUtf8(name), QMimeDatabase::MatchExtension);
  for (const QString& theme : {type.iconName(), type.genericIconName()}) {
    if (const auto found = byTheme.constFind(theme); found != byTheme.constEnd()) return *found;
    const QIcon icon = QIcon::fromTheme(theme);
    if (icon.isNull()) continue;
    return byTheme[theme] = Add(icon);
  }
  return IconFromResource(kGenericFile);
}

}  // namespace platform
