#pragma once

#include "extraction/Conversacion.h"

#include <QByteArray>

#include <optional>

/// One chat as a PDF that looks like a phone's screen: A4, bubbles on a warm ground.
///
/// A message that is taller than a page is not split: it begins on a page of its own and runs off its lower edge. Cut
/// in two, a bubble would look like two messages, with one date between them; the text files and the page for the
/// browser hold such a message whole.
namespace vellora::ExportarPDF
{

/// The file's bytes; absent when nothing could be drawn. No messages give one page with the title. Any thread of a
/// program with a QGuiApplication; it takes its time with long chats.
std::optional<QByteArray> pdf(const Mensajes &mensajes, const QString &titulo);

} // namespace vellora::ExportarPDF
