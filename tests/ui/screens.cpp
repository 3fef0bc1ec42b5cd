#include "ui/screens.h"

#include <QWidget>
#include <filesystem>
#include <gtest/gtest.h>

void SaveScreen(QWidget* widget, const std::string& name) {
  const std::string folder = ORVANE_SOURCE_DIR "/build/screens";
  std::filesystem::create_directories(folder);
  EXPECT_TRUE(widget->grab().save(QString::fromStdString(folder + "/" + name + ".png"), "PNG"));
}
