// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The forms in which texts are compared and sorted.
namespace placesd
{

/// Without case and accents: what two texts have in common that are the same to whoever searches.
QString searchKey(const QString &text);

/// Without case: what names are sorted by, whatever the locale.
QString sortKey(const QString &text);

/// The words of a text: runs of letters, digits and marks.
QStringList words(const QString &text);

/// True when every word of `term` starts a word of `text`.
bool containsWords(const QString &text, const QString &term);

} // namespace placesd
