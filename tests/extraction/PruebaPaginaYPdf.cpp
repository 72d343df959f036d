#include "extraction/Conversacion.h"
#include "extraction/ExportarPDF.h"
#include "support/BaseDePrueba.h"
#include "support/Navegador.h"
#include "support/TextosHostiles.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What is handed out to be opened by other programs, opened by them.
class PruebaPaginaYPdf : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        QVERIFY(textosHostiles().size() >= 80);
    }
    void textosEnLaPagina();
    void aspectoDeLaPagina();
    void paginaImpresa();
    void pdf();
    void emoji();
    void mensajeMasAltoQueLaHoja();
    void pdfVacio();
    void textosEnElPdf();

private:
    QString pagina(const QByteArray &chat) const
    {
        escribirFichero(casa->filePath(u"WhatsApp/Chats/Ana.txt"_s), chat);
        Extraccion::chatsEnPagina(casa->path());
        return casa->filePath(u"Mis conversaciones.html"_s);
    }
    QString guarda(const QByteArray &chat, const QString &titulo) const
    {
        const auto bytes = ExportarPDF::pdf(Mensajes::deTexto(chat), titulo);
        const auto fichero = casa->filePath(u"chat.pdf"_s);
        return bytes && escribirFichero(fichero, *bytes) ? fichero : QString();
    }
    static QString salidaDe(const QString &programa, const QStringList &argumentos)
    {
        QProcess proceso;
        proceso.start(programa, argumentos);
        proceso.waitForFinished(60'000);
        return QString::fromUtf8(proceso.readAllStandardOutput());
    }
    static QString textoDe(const QString &pdf) { return salidaDe(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s}); }
    static int hojasDe(const QString &pdf)
    {
        static const QRegularExpression hojas(u"Pages:\\s+(\\d+)"_s);
        return hojas.match(salidaDe(u"pdfinfo"_s, {pdf})).captured(1).toInt();
    }
    /// One page as a picture of a point for each pixel.
    QImage hoja(const QString &pdf, int cual) const
    {
        const auto numero = QString::number(cual);
        salidaDe(u"pdftoppm"_s, {u"-r"_s, u"72"_s, u"-f"_s, numero, u"-l"_s, numero, u"-singlefile"_s, u"-png"_s, pdf,
                                 casa->filePath(u"hoja"_s)});
        return QImage(casa->filePath(u"hoja.png"_s));
    }
    static bool parecido(QColor uno, QColor otro)
    {
        return std::abs(uno.red() - otro.red()) < 4 && std::abs(uno.green() - otro.green()) < 4 &&
               std::abs(uno.blue() - otro.blue()) < 4;
    }
    static bool tiene(const QImage &imagen, QColor color)
    {
        for (int y = 0; y < imagen.height(); ++y) {
            for (int x = 0; x < imagen.width(); ++x) {
                if (parecido(imagen.pixelColor(x, y), color))
                    return true;
            }
        }
        return false;
    }

    std::unique_ptr<QTemporaryDir> casa;
};

/// Each text stands in its bubble as it was typed, the page has no element of its own making, and asks nobody anything.
void PruebaPaginaYPdf::textosEnLaPagina()
{
    QTcpServer oido;
    QVERIFY(oido.listen(QHostAddress::LocalHost));
    const auto puerto = QByteArray::number(oido.serverPort());
    QByteArray chat;
    const auto textos = textosHostiles();
    for (const auto &texto : textos)
        chat += "[01/02/2026 10:00] Ana: " + texto.toUtf8().replace("127.0.0.1:1/", "127.0.0.1:" + puerto + "/") + '\n';
    const auto fichero = pagina(chat);
    const auto vista = Navegador::comoLaEntiende(fichero);
    QCOMPARE(vista.count("<div class=\"linea "), textos.size());
    QCOMPARE(vista.count("class=\"burbuja\""), textos.size());
    for (const auto *elemento :
         {"<script", "<img", "<iframe", "<svg", "<a ", "<b>", "<link", "<base", "<form", "<input", "<object", "<video",
          "<font", "<table", "<plaintext", "<xmp", "<math", "<textarea"})
        QVERIFY2(!vista.contains(elemento), elemento);
    QCOMPARE(vista.count("<style"), 1);
    QCOMPARE(vista.count("<meta"), 2);
    QCOMPARE(vista.count("<title"), 1);
    // What the browser writes back of a text is what was typed, escaped.
    qsizetype sitio = 0;
    for (const auto &texto : textos) {
        auto esperado = QString(texto).replace(u"127.0.0.1:1/"_s, u"127.0.0.1:%1/"_s.arg(oido.serverPort()));
        esperado = (u"Ana: "_s + esperado).trimmed().toHtmlEscaped().replace(u"&quot;"_s, u"\""_s);
        esperado.replace(QChar(0xA0), u"&nbsp;"_s);
        sitio = vista.indexOf(esperado.toUtf8() + "<span class=\"cuando\">", sitio);
        QVERIFY2(sitio >= 0, qPrintable(texto.left(80)));
    }
    QVERIFY(!oido.waitForNewConnection(200));
}

void PruebaPaginaYPdf::aspectoDeLaPagina()
{
    const auto fichero = pagina("[01/02/2026 10:00] Ana: hola\n[01/02/2026 10:01] YO: adiós\n");
    const auto clara = Navegador::retrato(fichero, casa->filePath(u"clara.png"_s), false);
    QVERIFY(parecido(clara.pixelColor(5, 690), QColor(u"#ffffff"_s)));
    QVERIFY(tiene(clara, QColor(u"#dcf8c6"_s)) && tiene(clara, QColor(u"#f1f0f0"_s)));
    const auto oscura = Navegador::retrato(fichero, casa->filePath(u"oscura.png"_s), true);
    QVERIFY(parecido(oscura.pixelColor(5, 690), QColor(u"#1c1c1e"_s)));
    QVERIFY(tiene(oscura, QColor(u"#2b5136"_s)) && tiene(oscura, QColor(u"#2c2c2e"_s)));
    QVERIFY(!tiene(oscura, QColor(u"#ffffff"_s)));
    // The owner's stand at the right, the other's at the left.
    const auto columna = [&clara](int x) {
        return clara.copy(x, 0, 3, 700);
    };
    QVERIFY(tiene(columna(70), QColor(u"#f1f0f0"_s)) && !tiene(columna(70), QColor(u"#dcf8c6"_s)));
    QVERIFY(tiene(columna(840), QColor(u"#dcf8c6"_s)));
}

void PruebaPaginaYPdf::paginaImpresa()
{
    const auto impresa = casa->filePath(u"impresa.pdf"_s);
    Navegador::imprime(pagina("[01/02/2026 10:00] Ana: hola 🥘\n"), impresa);
    const auto texto = textoDe(impresa);
    QVERIFY(texto.contains(u"Mis conversaciones"_s));
    QVERIFY(texto.contains(u"Para guardarlas en PDF: Archivo › Imprimir › Guardar como PDF."_s));
    QVERIFY(texto.contains(u"Ana: hola"_s));
    QCOMPARE(texto.count(u"Ana"_s), 1); // its summary is not printed
}

void PruebaPaginaYPdf::pdf()
{
    QByteArray chat;
    for (int i = 0; i < 60; ++i)
        chat += "[01/02/2026 10:" + QByteArray::number(10 + i % 50) + "] " + (i % 2 ? "YO" : "Lucía") + ": mensaje " +
                QByteArray::number(i) + "\n";
    const auto fichero = guarda(chat, u"Lucía"_s);
    const auto texto = textoDe(fichero);
    for (int i = 0; i < 60; ++i)
        QVERIFY2(texto.contains(u"mensaje %1"_s.arg(i)), qPrintable(QString::number(i)));
    QVERIFY(texto.contains(u"01/02/2026 10:10"_s));
    QCOMPARE(texto.count(u"Lucía"_s), 31);
    // 728 points on the first page and 762 on the next, in bubbles of 45 (the owner's) and 58 with 10 between.
    QVERIFY2(hojasDe(fichero) == 5 || hojasDe(fichero) == 6, qPrintable(QString::number(hojasDe(fichero))));
    const auto primera = hoja(fichero, 1);
    QCOMPARE(primera.size(), QSize(595, 842));
    QVERIFY(parecido(primera.pixelColor(5, 5), QColor(236, 229, 221)));
    QVERIFY(parecido(primera.pixelColor(45, 100), Qt::white));              // the other's first bubble at the left
    QVERIFY(parecido(primera.pixelColor(550, 160), QColor(220, 248, 198))); // the owner's at the right
    QVERIFY(parecido(primera.pixelColor(570, 160), QColor(236, 229, 221)));
}

void PruebaPaginaYPdf::emoji()
{
    const auto letras = guarda("[01/02/2026 10:00] YO: gato\n", u"Sin"_s);
    const auto rojo = [this](const QString &fichero) {
        const auto imagen = hoja(fichero, 1);
        int cuantos = 0;
        for (int y = 70; y < 140; ++y) {
            for (int x = 380; x < 560; ++x) {
                const auto punto = imagen.pixelColor(x, y);
                cuantos += punto.red() > 180 && punto.green() < 90 && punto.blue() < 90;
            }
        }
        return cuantos;
    };
    QCOMPARE(rojo(letras), 0);
    const auto corazon = guarda("[01/02/2026 10:00] YO: te quiero ❤️ mucho\n", u"Con"_s);
    QVERIFY(rojo(corazon) > 20);
    QVERIFY(textoDe(corazon).contains(u"te quiero"_s) && textoDe(corazon).contains(u"mucho"_s));
    // A sign is in the file once, however many times it is sent.
    const auto veces = [this](int cuantas) {
        return QFileInfo(
                   guarda("[01/02/2026 10:00] YO: " + QByteArray("👨‍👩‍👧 🥘 ").repeated(cuantas), u"x"_s))
            .size();
    };
    QVERIFY(veces(200) < veces(1) + 20'000);
}

void PruebaPaginaYPdf::mensajeMasAltoQueLaHoja()
{
    const auto fichero =
        guarda("[01/02/2026 10:00] Ana: antes\n[01/02/2026 10:00] Ana: " + QByteArray("larguísimo ").repeated(2000) +
                   "\n[01/02/2026 10:00] YO: después\n",
               u"Ana"_s);
    QCOMPARE(hojasDe(fichero), 3);
    QVERIFY(parecido(hoja(fichero, 2).pixelColor(45, 835), Qt::white)); // runs off the lower edge
    QVERIFY(parecido(hoja(fichero, 2).pixelColor(45, 45), Qt::white));
    QVERIFY(salidaDe(u"pdftotext"_s, {u"-f"_s, u"3"_s, fichero, u"-"_s}).contains(u"después"_s));
}

void PruebaPaginaYPdf::pdfVacio()
{
    const auto titulo = u"Un título larguísimo que no cabe en una sola línea de la hoja, por más que uno lo intente "
                        "una y otra vez"_s;
    const auto fichero = guarda({}, titulo);
    QCOMPARE(hojasDe(fichero), 1);
    QVERIFY(textoDe(fichero).contains(u"Un título larguísimo"_s));
}

void PruebaPaginaYPdf::textosEnElPdf()
{
    QByteArray chat;
    const auto textos = textosHostiles();
    for (const auto &texto : textos)
        chat += "[01/02/2026 10:00] YO: " + texto.toUtf8() + '\n';
    const auto fichero = guarda(chat, u"<b>(hostil) \\"_s);
    QVERIFY(hojasDe(fichero) > 10);
    const auto informe = salidaDe(u"pdfinfo"_s, {fichero});
    QVERIFY(informe.contains(QRegularExpression(u"JavaScript:\\s+no"_s)));
    QVERIFY(salidaDe(u"pdfdetach"_s, {u"-list"_s, fichero}).startsWith(u"0 "_s));
    const auto sinBlancos = [](QString texto) {
        return texto.remove(QRegularExpression(u"\\s|\\p{C}"_s));
    };
    const auto texto = sinBlancos(salidaDe(u"pdftotext"_s, {u"-raw"_s, fichero, u"-"_s}));
    // What is written in our letters is read back as it was typed; other scripts have their own order on the page.
    static const QRegularExpression deAqui(u"^[\\x20-\\x7e¡-ÿ]{1,200}$"_s);
    int comprobados = 0;
    for (const auto &uno : textos) {
        if (!deAqui.match(uno).hasMatch())
            continue;
        ++comprobados;
        QVERIFY2(texto.contains(sinBlancos(uno)), qPrintable(uno));
    }
    QVERIFY(comprobados > 70);
}

QTEST_MAIN(PruebaPaginaYPdf)
#include "PruebaPaginaYPdf.moc"
