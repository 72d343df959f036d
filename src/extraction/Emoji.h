#pragma once

#include <QHash>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QTextLayout>

class QPainter;

namespace vellora
{

/// Coloured signs in a PDF. Qt leaves out the letters of a font made of pictures there, and takes each one out of the
/// font again whenever it is measured; so a blank stands for each sign in the text, and a picture is drawn over it,
/// which the file holds once. One thread each.
class Emoji
{
public:
    struct Signo {
        int sitio;     ///< of its blank in the text
        QString letra; ///< all that makes it: a family is one
    };

    /// Puts blanks where the signs of a text are.
    static QList<Signo> apartar(QString &texto);
    /// As wide as the signs: formats for the text's layout.
    static QList<QTextLayout::FormatRange> huecos(const QList<Signo> &signos, const QFont &fuente);
    /// Draws them over a layout that was drawn at `origen`.
    void pintar(QPainter &pintor, const QTextLayout &texto, const QList<Signo> &signos, QPointF origen);

private:
    const QImage &dibujo(const QString &signo, int puntos);

    QHash<QString, QImage> dibujos;
};

} // namespace vellora
