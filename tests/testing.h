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

inline void PrintTo(const QByteArray& text, std::ostream* stream)
{
    *stream << '"' << text.left(2000).toStdString() << '"';
}

/// What there is, as one text for one expectation: "3 true [1, 2]" of two values and a list, for example.
template<typename... TValues> QString State(const TValues&... values)
{
    QString text;
    (QDebug(&text).noquote() << ... << values);
    return text.trimmed();
}

/// A text without its tags.
inline QString Plain(QString html)
{
    static const QRegularExpression tag("<[^>]*>");
    return html.remove(tag);
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
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(file_name);
    EXPECT_EQ(file.write(content), content.size());
    return file_name;
}

/// The contrast, 1 to 21, between the commonest colour of a picture and the one that stands out most from it.
inline double Contrast(const QImage& picture)
{
    std::map<int, int> greys;
    for (int i = 0; i < picture.width() * picture.height(); ++i)
        ++greys[qGray(picture.pixel(i % picture.width(), i / picture.width()))];
    const auto rarer = [](const auto& a, const auto& b) { return a.second < b.second; };
    const auto luminance = [](const auto& grey) { return 0.05 + std::pow(grey.first / 255.0, 2.2); };
    const double ground = luminance(*std::max_element(greys.begin(), greys.end(), rarer));
    return std::max(ground / luminance(*greys.begin()), luminance(*greys.rbegin()) / ground);
}

inline QByteArray Content(const QString& file_name)
{
    QFile file(file_name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}
