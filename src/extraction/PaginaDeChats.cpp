#include "core/EscritorDeTexto.h"
#include "extraction/Conversacion.h"
#include "extraction/Renglones.h"
#include "extraction/Textos.h"

#include <QFileInfo>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

constexpr auto cabeza = R"(<!DOCTYPE html>
<html lang="es">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Mis conversaciones</title>
<style>
:root {
  --fondo: #fff; --texto: #1a1a1a; --suave: #666; --mio: #dcf8c6; --suyo: #f1f0f0; --borde: #e3e3e3;
}
@media (prefers-color-scheme: dark) {
  :root:not([data-theme="light"]) {
    --fondo: #1c1c1e; --texto: #f2f2f7; --suave: #98989d; --mio: #2b5136; --suyo: #2c2c2e; --borde: #3a3a3c;
  }
}
body { margin: 0; background: var(--fondo); color: var(--texto); font: 16px/1.5 system-ui, sans-serif; }
header { padding: 22px 26px; border-bottom: 1px solid var(--borde); }
header p { margin: 6px 0 0; color: var(--suave); white-space: pre-line; }
h1 { font-size: 24px; margin: 0; }
h2 { font-size: 19px; margin: 28px 0 6px; }
main { padding: 0 26px 40px; max-width: 900px; }
.chat { border: 1px solid var(--borde); border-radius: 12px; margin: 14px 0; overflow: hidden; }
.chat summary { padding: 13px 18px; font-weight: 600; cursor: pointer; }
.linea { padding: 7px 18px; }
.burbuja { display: inline-block; padding: 8px 12px; border-radius: 14px; background: var(--suyo); max-width: 80%;
  overflow-wrap: anywhere; }
.yo { text-align: right; }
.yo .burbuja { background: var(--mio); }
.cuando { display: block; font-size: 12px; color: var(--suave); margin-top: 3px; }
@media print {
  .chat { break-inside: avoid; }
  .chat summary { display: none; }
}
</style>
</head>
<body>
<header>
<h1>Mis conversaciones</h1>
<p>Sacadas de la copia de seguridad del iPhone.
Para guardarlas en PDF: Archivo &rsaquo; Imprimir &rsaquo; Guardar como PDF.</p>
</header>
<main>
)";
constexpr auto pie = "</main>\n</body>\n</html>\n";

struct Fuente {
    const char *titulo;
    const char16_t *sitio;
};

constexpr std::array fuentes{Fuente{"WhatsApp", u"/WhatsApp/Chats"}, Fuente{"Mensajes", u"/Mensajes"}};

QByteArray escapado(QByteArrayView bytes)
{
    QByteArray limpio;
    ponerTextoLimpio(limpio, bytes);
    return limpio.replace('&', "&amp;").replace('<', "&lt;").replace('>', "&gt;");
}

/// The messages of one chat as bubbles, from the lines of its file.
class Burbujas
{
public:
    explicit Burbujas(EscritorDeTexto &laSalida) : salida(laSalida) {}
    Burbujas(const Burbujas &) = delete;
    Burbujas &operator=(const Burbujas &) = delete;
    ~Burbujas() { cerrar(); }

    void linea(QByteArrayView linea)
    {
        const auto cierre = linea.startsWith('[') ? linea.indexOf(']') : -1;
        if (cierre < 0 && abierta) {
            salida << "<br>" << escapado(Renglones::sinSangria(linea));
            return;
        }
        cerrar();
        abierta = true;
        cuando = cierre < 0 ? QByteArray() : linea.sliced(1, cierre - 1).toByteArray();
        const auto resto = linea.sliced(cierre + 1);
        const auto texto = cierre < 0 ? resto.toByteArray() : QString::fromUtf8(resto).trimmed().toUtf8();
        const bool mia = cierre >= 0 && texto.startsWith("YO:");
        salida << (mia ? "<div class=\"linea yo\">" : "<div class=\"linea \">") << "<span class=\"burbuja\">"
               << escapado(texto);
    }

private:
    void cerrar()
    {
        if (std::exchange(abierta, false))
            salida << "<span class=\"cuando\">" << escapado(cuando) << "</span></span></div>\n";
    }

    EscritorDeTexto &salida;
    bool abierta = false;
    QByteArray cuando;
};

} // namespace

std::optional<QString> chatsEnPagina(const QString &desde)
{
    std::array<QStringList, fuentes.size()> ficheros;
    for (std::size_t i = 0; i < fuentes.size(); ++i)
        ficheros[i] = ficherosDeTexto(desde + QString::fromUtf16(fuentes[i].sitio));
    auto carpeta = CarpetaDeDestino::abrir(desde);
    if (!carpeta || (ficheros[0].isEmpty() && ficheros[1].isEmpty()))
        return {};
    EscritorDeTexto salida(*carpeta, "Mis conversaciones.html");
    salida << cabeza;
    qsizetype chats = 0;
    for (std::size_t i = 0; i < fuentes.size(); ++i) {
        if (ficheros[i].isEmpty())
            continue;
        salida << "<h2>" << fuentes[i].titulo << "</h2>\n";
        for (const auto &fichero : ficheros[i]) {
            if (!QFileInfo(fichero).isReadable())
                continue;
            salida << "<details class=\"chat\" open><summary>" << escapado(nombreDeChat(fichero).toUtf8())
                   << "</summary>\n";
            {
                Burbujas burbujas(salida);
                porCadaLinea(fichero, [&burbujas](QByteArrayView linea) {
                    burbujas.linea(linea);
                    return true;
                });
            }
            salida << "</details>\n";
            ++chats;
        }
    }
    salida << pie;
    if (!salida.cerrar())
        return {};
    return u"Conversaciones: %1 chats en una página (Mis conversaciones.html)"_s.arg(chats);
}

} // namespace vellora::Extraccion
