#include "ui/table_plot.h"

#include "form/form1.h"
#include "form/table_window.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cmath>

// Names before the colon pair a measurement with its reference, as in core_bench.cpp.

namespace {

constexpr QSize kSize(600, 400);

form::FrequencyTable fullTable() {
    form::FrequencyTable table;
    for (int i = 0; i < form::kTableEntriesMax; ++i)
        table.push_back({7 + i / 1000.0, 50 + 40 * std::sin(i / 20.0), 400 - 2.0 * i});
    return table;
}

/// The plot of a full table with the smooth curve.
void drawPlot(benchmark::State& state) {
    simulated::Clock clock;
    simulated::DdeLinks links;
    form::Form1 form(clock, links);
    form::FrmHiResMem window;
    form.hiResMem = fullTable();
    form.tuner.curve = form::TableCurve::kMonotoneCubic;
    form.frequencyNow = 7'100'000;
    ui::TablePlot plot(form, window);
    plot.resize(kSize);
    plot.show();
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        plot.render(&image);
}

/// As many lines and dots at places that are known.
void drawLines(benchmark::State& state) {
    const form::FrequencyTable table = fullTable();
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(image.rect(), Qt::white);
        painter.setPen(QPen(Qt::black, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::black);
        for (const double form::TableEntry::*position : {&form::TableEntry::posA, &form::TableEntry::posB}) {
            for (std::size_t i = 0; i + 1 < table.size(); ++i) {
                QPolygonF line;
                line << QPointF(static_cast<double>(i) * 3, table[i].*position)
                     << QPointF(static_cast<double>(i + 1) * 3, table[i + 1].*position);
                painter.drawPolyline(line);
            }
            for (std::size_t i = 0; i < table.size(); ++i)
                painter.drawEllipse(QPointF(static_cast<double>(i) * 3, table[i].*position), 4, 4);
        }
    }
}

BENCHMARK(drawPlot)->Name("plot of 200 entries drawn: ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(drawLines)->Name("plot of 200 entries drawn: bare")->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
