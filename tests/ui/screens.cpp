#include "ui/screens.h"

#include <QWidget>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "ui/layout_checks.h"

namespace {

std::string PathOf(const QWidget* widget, const std::string& name, const char* extension) {
  const std::string folder = ORVANE_SOURCE_DIR "/build/screens";
  std::filesystem::create_directories(folder);
  return folder + "/" + name + "@" + QString::number(widget->devicePixelRatioF()).toStdString() + extension;
}

}  // namespace

void SavePicture(QWidget* widget, const std::string& name) {
  EXPECT_TRUE(widget->grab().save(QString::fromStdString(PathOf(widget, name, ".png")), "PNG"));
}

void SaveScreen(QWidget* window, const std::string& name) {
  SCOPED_TRACE(name);
  SavePicture(window, name);
  std::ofstream(PathOf(window, name, ".txt")) << ExpectAccessible(window);
}
