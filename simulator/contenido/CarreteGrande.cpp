#include "contenido/Contexto.h"
#include "contenido/Exif.h"
#include "contenido/Pintor.h"
#include "contenido/Taller.h"

#include <QFile>
#include <QtEndian>

#include <map>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

constexpr int modelos = 24;
/// One video is as long as a whole evening: what streams must not notice, what holds files in memory must.
constexpr qint64 bytesDelLargo = 400'000'000;

/// Writes tens of thousands of roll files: a few real ones are made, and each file is one of them with a tail of its
/// own, so that no two are equal and yet all open.
class Multicopista
{
public:
    explicit Multicopista(Contexto &contexto)
        : c(contexto), m_taller(contexto), m_ruido(Azar(contexto.opciones.semilla, "colas").bytes(1 << 20))
    {
    }

    void copia(Foto &f, qint64 bytesDeCola)
    {
        const auto ruta = c.media(u"DCIM/"_s + f.carpeta + u'/' + f.fichero);
        QFile fichero(ruta);
        const auto &modelo = m_modelos[clave(f)].isEmpty() ? (m_modelos[clave(f)] = haz(f)) : m_modelos[clave(f)];
        bool bien = fichero.open(QIODevice::WriteOnly) && fichero.write(modelo) == modelo.size();
        // In the formats made of boxes the tail is a "free" box; a JPEG's readers stop at its end mark.
        if (!f.fichero.endsWith(u".JPG"_s) && !f.fichero.endsWith(u".PNG"_s)) {
            QByteArray cabecera(8, Qt::Uninitialized);
            qToBigEndian(static_cast<quint32>(bytesDeCola + 8), cabecera.data());
            bien = bien && fichero.write(cabecera.replace(4, 4, "free")) == 8;
        }
        bien = bien && fichero.write(f.fichero.toLatin1()) == f.fichero.size();
        for (qint64 quedan = bytesDeCola - f.fichero.size(), salto = f.motivo * 977 % (1 << 19); quedan > 0 && bien;
             salto = 0) {
            const auto trozo = std::min<qint64>(quedan, m_ruido.size() - salto);
            bien = fichero.write(m_ruido.constData() + salto, trozo) == trozo;
            quedan -= trozo;
        }
        if (!bien)
            c.falla(u"No se pudo escribir %1: %2"_s.arg(ruta, fichero.errorString()));
        f.bytes = fichero.size();
        c.fechas[ruta] = f.momento;
    }

private:
    [[nodiscard]] static QString clave(const Foto &f)
    {
        return f.fichero.section(u'.', -1) + QString::number(f.motivo % modelos);
    }

    QByteArray haz(const Foto &f)
    {
        if (f.clase == Foto::Captura)
            return comoPng(pintaCaptura(f.motivo, f.ancho / 2, f.alto / 2));
        const auto ruta = c.raiz + u"/modelo."_s + f.fichero.section(u'.', -1);
        const auto imagen = m_taller.imagen(f.motivo % modelos, f.ancho, f.alto);
        if (f.esVideo())
            m_taller.video(ruta, f, imagen);
        else {
            const bool heic = ruta.endsWith(u".HEIC"_s);
            const auto jpeg = heic ? ruta + u".jpg"_s : ruta;
            c.escribe(jpeg, comoJpeg(imagen, 80));
            if (!ponExif(jpeg, f) || (heic && !m_taller.heic(jpeg, ruta, 50)))
                c.falla(u"No se pudo hacer %1"_s.arg(ruta));
            if (heic)
                QFile::remove(jpeg);
        }
        QFile hecho(ruta);
        const auto datos = hecho.open(QIODevice::ReadOnly) ? hecho.readAll() : QByteArray();
        hecho.remove();
        return datos;
    }

    Contexto &c;
    Taller m_taller;
    QByteArray m_ruido;
    std::map<QString, QByteArray> m_modelos;
};

} // namespace

void ponCarreteGrande(Contexto &c)
{
    Multicopista multicopista(c);
    auto a = c.azar("tamanos");
    bool largo = false;
    for (auto &foto : c.carrete) {
        if (foto.clase == Foto::Aae) {
            ponAjusteDeFoto(c, foto);
            c.fechas[c.media(u"DCIM/"_s + foto.carpeta + u'/' + foto.fichero)] = foto.momento;
            continue;
        }
        const bool elLargo = foto.clase == Foto::Video && !largo;
        largo = largo || elLargo;
        multicopista.copia(foto, elLargo ? bytesDelLargo : a.entero(4'000, foto.esVideo() ? 40'000 : 16'000));
    }
}

} // namespace simulado
