// Paint cost of the direction pad at device pixel ratios 1 and 2.
// Prints the median time of one full repaint in microseconds.
#include "direction/cptzcloud.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <vector>

using PreviewPTZControl::CPTZCloud;

static double MedianPaintMicros(CPTZCloud &pad, qreal dpr, int rounds)
{
    QImage target((QSizeF(pad.size()) * dpr).toSize(), QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(dpr);
    std::vector<qint64> samples;
    samples.reserve(rounds);
    for (int i = 0; i < rounds + 10; ++i) {
        // Cycle the states a real session sees: hover, press, checked centre, disabled arms.
        pad.SetSectionChecked(CPTZCloud::Center, i % 2 == 0);
        pad.SetSectionsEnabled({1, 3, 7, 9}, i % 3 != 0);
        target.fill(Qt::transparent);
        QElapsedTimer timer;
        timer.start();
        QPainter painter(&target);
        pad.paintPad(&painter, dpr);
        painter.end();
        const qint64 ns = timer.nsecsElapsed();
        if (i >= 10) { // first rounds fill the caches
            samples.push_back(ns);
        }
    }
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2] / 1000.0;
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    CPTZCloud pad;
    pad.resize(174, 174);
    const int rounds = 500;
    for (qreal dpr : {1.0, 2.0}) {
        const double us = MedianPaintMicros(pad, dpr, rounds);
        std::printf("direction_pad paint dpr=%.0f: median %.1f us over %d repaints (target <= 500 us)\n", dpr, us,
                    rounds);
    }
    // The whole widget as Qt repaints it: the pad plus the transparent view over it.
    pad.show();
    QImage widgetTarget(pad.size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<qint64> samples;
    for (int i = 0; i < rounds; ++i) {
        widgetTarget.fill(Qt::transparent);
        QElapsedTimer timer;
        timer.start();
        pad.render(&widgetTarget);
        samples.push_back(timer.nsecsElapsed());
    }
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    std::printf("direction_pad widget render dpr=1 (pad and overlay view): median %.1f us\n",
                samples[samples.size() / 2] / 1000.0);

    // First paint at a new ratio renders every image once; show what that costs.
    QImage cold(QSize(174, 174) * 3, QImage::Format_ARGB32_Premultiplied);
    cold.setDevicePixelRatio(3);
    QElapsedTimer timer;
    timer.start();
    QPainter painter(&cold);
    pad.paintPad(&painter, 3);
    painter.end();
    std::printf("direction_pad first paint dpr=3 (cold caches): %.1f us\n", timer.nsecsElapsed() / 1000.0);
    // A second pad finds the images already rendered by the first.
    CPTZCloud second;
    QImage warm(QSize(174, 174) * 3, QImage::Format_ARGB32_Premultiplied);
    warm.setDevicePixelRatio(3);
    timer.restart();
    QPainter warmPainter(&warm);
    second.paintPad(&warmPainter, 3);
    warmPainter.end();
    std::printf("direction_pad first paint of a second pad dpr=3: %.1f us\n", timer.nsecsElapsed() / 1000.0);
    return 0;
}
