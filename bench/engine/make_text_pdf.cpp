// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// make_text_pdf PAGES OUT: writes a PDF of PAGES US Letter pages of running text in an
// embedded TrueType font, as a word processor would, with one of each kind of contact data
// on every tenth page. Needs a font (fonts-dejavu-core) and QT_QPA_PLATFORM=offscreen without a
// display.
#include <QFont>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QStringList>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_text_pdf PAGES OUT\n");
    return 2;
  }
  QGuiApplication application(argc, argv);
  const int pages = std::atoi(argv[1]);
  QPdfWriter writer(QString::fromLocal8Bit(argv[2]));
  writer.setPageSize(QPageSize(QPageSize::Letter));
  writer.setResolution(300);
  writer.setTitle(QStringLiteral("A long report"));
  writer.setCreator(QStringLiteral("make_text_pdf"));
  QPainter painter(&writer);
  painter.setFont(QFont(QStringLiteral("DejaVu Serif"), 10));
  const QStringList words =
      QStringLiteral(
          "the of and to in a is that for it as was with be by on not he this are or his from at "
          "which but have an they you were her she there been one all we their has would when "
          "report figures quarter revenue growth market analysis customer product service")
          .split(' ');
  const int lineHeight = painter.fontMetrics().height();
  const int left = 300;
  const int top = 300;
  const int bottom = writer.height() - 300;
  unsigned seed = 42;
  for (int page = 0; page < pages; ++page) {
    if (page > 0) writer.newPage();
    int y = top;
    for (int line = 0; y < bottom; ++line, y += lineHeight) {
      QString text;
      for (int word = 0; word < 14; ++word) {
        seed = seed * 1103515245 + 12345;
        text += words[static_cast<int>((seed >> 16) % words.size())] + ' ';
      }
      if (page % 10 == 0 && line == 3) {
        text = QStringLiteral("contact ann.lee@example.org or (555) 123-4567");
      } else if (page % 10 == 0 && line == 4) {
        text = QStringLiteral("see https://example.org/report and host 192.168.1.10");
      }
      painter.drawText(left, y, text);
    }
  }
  return painter.end() ? 0 : 1;
}
