// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QVector>
#include <QtGui/QPainterPath>
#include <QtWidgets/QWidget>

/// A world map in equirectangular projection, north up, with places as dots and one marked place. Drawn in the colours
/// of the palette, in any size.
class WorldMap : public QWidget
{
    Q_OBJECT
public:
    explicit WorldMap(QWidget *parent = nullptr);

    /// Sets the dots. Invalid positions are skipped.
    void setDots(const QVector<vela::platform::places::Coordinates> &dots);
    /// Sets the marked position; an invalid one marks nothing.
    void mark(const vela::platform::places::Coordinates &position);
    /// Position in the widget, in pixels.
    [[nodiscard]] QPointF pointOf(const vela::platform::places::Coordinates &position) const;

    [[nodiscard]] QSize sizeHint() const override { return {720, 360}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {240, 120}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return width / 2; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The largest centred rectangle with an aspect ratio of 2:1.
    [[nodiscard]] QRectF frame() const;
    void drawEarth(QPainter &painter) const;
    void drawMark(QPainter &painter) const;

    const QPainterPath m_land; ///< In degrees: x is the longitude to the east, y the latitude to the south.
    QVector<vela::platform::places::Coordinates> m_dots;
    vela::platform::places::Coordinates m_marked;
};
