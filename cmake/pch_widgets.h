#pragma once

#include "pch_core.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <QWidget>
#include <QWindow>
