// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QVector>
#include <QtGui/QPainterPath>
#include <QtWidgets/QWidget>

/// The land of the Earth in equirectangular projection, north up, with places on it: each a dot, one of them marked.
/// It is drawn in the colours of the palette, at whatever size it has.
class WorldMap : public QWidget
{
    Q_OBJECT
public:
    explicit WorldMap(QWidget *parent = nullptr);

    /// What to show as dots. Positions that are not valid are passed over.
    void setDots(const QVector<vela::platform::places::Coordinates> &dots);
    /// What to mark; a position that is not valid marks nothing.
    void mark(const vela::platform::places::Coordinates &position);
    /// Where a position is in the widget, in pixels.
    [[nodiscard]] QPointF pointOf(const vela::platform::places::Coordinates &position) const;

    [[nodiscard]] QSize sizeHint() const override { return {720, 360}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {240, 120}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return width / 2; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The largest rectangle of two to one in the middle of the widget.
    [[nodiscard]] QRectF frame() const;
    void drawEarth(QPainter &painter) const;
    void drawMark(QPainter &painter) const;

    const QPainterPath m_land; ///< In degrees, longitude to the east and latitude to the south.
    QVector<vela::platform::places::Coordinates> m_dots;
    vela::platform::places::Coordinates m_marked;
};
