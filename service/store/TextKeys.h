// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The forms in which texts are compared, searched and sorted. The full-text index holds search keys and takes for a
/// word what words() takes for one, so that every operator sees a name alike.
namespace placesd
{

/// Without case and accents: what two texts have in common that are the same to whoever searches. Signs that are no
/// accents, such as the vowels of many scripts, stay.
QString searchKey(const QString &text);

/// Without case: what names are sorted by, whatever the locale.
QString sortKey(const QString &text);

/// The words of a text, each once: runs of letters, digits, marks and pictographs.
QStringList words(const QString &text);

/// True when every word of `wanted` starts one of `there`, which are sorted.
bool startWords(const QStringList &there, const QStringList &wanted);

/// True when every word of `term` starts a word of `text`; where the term has no words, when it occurs in the text.
bool containsWords(const QString &text, const QString &term);

} // namespace placesd
