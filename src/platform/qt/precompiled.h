// The Qt headers that most files of this folder include, compiled once.
#pragma once

#include <QAbstractTableModel>
#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QFileIconProvider>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QStyledItemDelegate>
#include <QSvgRenderer>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QWidget>
