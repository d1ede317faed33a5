#pragma once
// The manual as a PDF: its Markdown text laid out on A4 pages with the screenshots in place.

#include <QByteArray>
#include <QString>
#include <vector>

#include "tools/manual/screenshots.h"

namespace kavor::manual {

// The PDF's bytes; the same text and pictures give the same bytes.
QByteArray manualPdf(const QString& markdown, const std::vector<Screenshot>& pictures);

// The PDF's moment of making, which the writer takes from the clock, replaced by a fixed one of
// the same length, so that the cross-reference offsets stay right.
QByteArray withFixedCreationDate(QByteArray pdf);

}  // namespace kavor::manual
