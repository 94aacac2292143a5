// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QString>

/// The icon of a resource such as ":/menu/file_new.png", with the drawings of the same sign for other sizes
/// (":/menu/file_new_16.png" and so on) that are there, so that it is sharp in menus, tool bars and on
/// high-resolution screens. A null icon if there is none of that name.
QIcon Load_Icon(const QString& path);
