// SPDX-License-Identifier: MIT
// What the tests share.
#pragma once

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

/// Makes failure messages show texts as texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

/// The child of `parent` with that object name; where there is none the test program stops.
template<typename T> T& Child(const QObject& parent, const char* name)
{
    T* child = parent.findChild<T*>(name);
    if (child == nullptr)
        qFatal("No child is called %s", name);
    return *child;
}

inline QString Write(const QString& file_name, const QByteArray& content)
{
    QFile file(file_name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return file_name;
}

inline QByteArray Content(const QString& file_name)
{
    QFile file(file_name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}
