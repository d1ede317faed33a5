#include "tools/manual/manual_pdf.h"

#include <QBuffer>
#include <QColor>
#include <QFont>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextFrame>
#include <QTextImageFormat>
#include <QTextTable>
#include <QTextTableFormat>
#include <QUrl>
#include <algorithm>
#include <cctype>

namespace kavor::manual {

namespace {

// Printing lays out a copy of the document, which asks its original for the pictures.
class ManualDocument final : public QTextDocument {
 public:
  explicit ManualDocument(const std::vector<Screenshot>& pictures) : pictures_(pictures) {}

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    if (type == QTextDocument::ImageResource)
      for (const Screenshot& picture : pictures_)
        if (QUrl(picture.name) == name) return picture.image;
    return QTextDocument::loadResource(type, name);
  }

 private:
  const std::vector<Screenshot>& pictures_;
};

// The width of a page's text in the document's units (pixels at 96 dpi): A4 less the 2 cm
// margins that printing a document keeps on each side.
constexpr double kTextWidth = (210.0 - 40.0) / 25.4 * 96.0;

// Screenshots are drawn at twice their size: scaled to the text width, they stay sharp on paper.
void fitPicturesToTheText(QTextDocument& document) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (!fragment.charFormat().isImageFormat()) continue;
      QTextImageFormat format = fragment.charFormat().toImageFormat();
      const QImage image =
          document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
      if (image.isNull()) continue;
      const double width = std::min(kTextWidth, image.width() / image.devicePixelRatio());
      format.setWidth(width);
      format.setHeight(width * image.height() / image.width());
      QTextCursor cursor(&document);
      cursor.setPosition(fragment.position());
      cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
      cursor.setCharFormat(format);
    }
  }
}

// Tables as on paper: thin single rules and some room inside each cell.
void ruleTheTables(QTextDocument& document) {
  for (QTextFrame* frame : document.rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (!table) continue;
    QTextTableFormat format = table->format();
    format.setBorder(1);
    format.setBorderBrush(QColor(160, 160, 160));
    format.setBorderCollapse(true);
    format.setCellSpacing(0);
    format.setCellPadding(3);
    format.setTopMargin(4);
    format.setBottomMargin(6);
    table->setFormat(format);
  }
}

}  // namespace

QByteArray manualPdf(const QString& markdown, const std::vector<Screenshot>& pictures) {
  ManualDocument document(pictures);
  document.setDefaultFont(QFont("DejaVu Sans", 10));
  document.setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
  fitPicturesToTheText(document);
  ruleTheTables(document);

  QByteArray bytes;
  {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle("Kavor Help");
    writer.setCreator("Kavor");
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    document.print(&writer);
  }
  return withFixedCreationDate(bytes);
}

QByteArray withFixedCreationDate(QByteArray pdf) {
  static const QByteArray kKey = "/CreationDate (D:";
  static const QByteArray kFixed = "20260101000000";
  const qsizetype at = pdf.indexOf(kKey);
  if (at < 0) return pdf;
  const qsizetype digits = at + kKey.size();
  qsizetype end = digits;
  while (end < pdf.size() && end - digits < kFixed.size() && std::isdigit(pdf[end]))
    ++end;
  if (end - digits == kFixed.size()) pdf.replace(digits, kFixed.size(), kFixed);
  return pdf;
}

}  // namespace kavor::manual
