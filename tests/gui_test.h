// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <gtest/gtest.h>

/// Makes failure messages show texts as texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

/// The child of `parent` with the given object name. Where there is none the test program stops, naming the
/// children that do exist.
template<typename T> T& Child(const QObject& parent, const char* name)
{
    T* child = parent.findChild<T*>(QLatin1String(name));
    if (child == nullptr) {
        QStringList names;
        const auto children = parent.findChildren<T*>();
        for (const T* other : children)
            names << other->objectName();
        ADD_FAILURE() << name << " is not among: " << names.join(QStringLiteral(", ")).toStdString();
        abort();
    }
    return *child;
}
