// Build step: draws an SVG picture into a PNG of the given size, so that the window shows large
// pictures without reading SVG at start-up.
//   qx9_render_image IN.svg OUT.png WIDTH HEIGHT
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: qx9_render_image IN.svg OUT.png WIDTH HEIGHT\n");
        return 2;
    }
    int qtArgc = 3;
    char platform[] = "-platform";
    char offscreen[] = "offscreen";
    char* qtArgv[] = {argv[0], platform, offscreen, nullptr};
    QGuiApplication app(qtArgc, qtArgv);
    const int width = std::stoi(argv[3]), height = std::stoi(argv[4]);
    QSvgRenderer svg(QString::fromLocal8Bit(argv[1]));
    if (!svg.isValid() || width <= 0 || height <= 0) {
        std::fprintf(stderr, "qx9_render_image: cannot draw %s at %dx%d\n", argv[1], width, height);
        return 1;
    }
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    svg.render(&painter, QRectF(0, 0, width, height));
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[2]), "PNG")) {
        std::fprintf(stderr, "qx9_render_image: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
