#include "ui/ventana/Secciones.h"

#include <array>

namespace vellora
{

namespace
{

struct Datos {
    const char16_t *titulo;
    const char16_t *simbolo;
    bool necesitaElIPhone = false;
    bool necesitaCopia = false;
    const char16_t *vista = nullptr;
};

// In the order of the enumeration.
constexpr std::array<Datos, Secciones::Actualizar + 1> tabla{{
    {u"Resumen", u"iphone.gen3", true, false, u"Ventana/PanelResumen"},
    {u"Fotos", u"photo.on.rectangle.angled", false, false, u"Fotos/PanelFotos"},
    {u"Buscar fotos", u"sparkle.magnifyingglass"},
    {u"Copias y datos", u"externaldrive.badge.timemachine", false, false, u"Copias/PanelCopias"},
    {u"Buscar en todo", u"text.magnifyingglass", false, false, u"Datos/VistaBuscadorGlobal"},
    {u"Personas", u"person.2.crop.square.stack"},
    {u"En números", u"chart.bar.xaxis"},
    {u"Apps", u"square.grid.2x2", true},
    {u"Contactos", u"person.crop.circle", false, true, u"Datos/PanelContactos"},
    {u"Contraseñas", u"key.fill", false, true, u"Datos/VistaContrasenas"},
    {u"Seguridad", u"lock.shield", true},
    {u"Familia", u"figure.2.and.child.holdinghands", true},
    {u"Espacio", u"internaldrive", true, false, u"Fotos/PanelEspacio"},
    {u"Pantalla", u"apps.iphone", true},
    {u"Terminal", u"slider.horizontal.3", true},
    {u"Limpieza", u"trash", false, false, u"Fotos/PanelLimpieza"},
    {u"Ajustes", u"gearshape", false, false, u"Ventana/PanelAjustes"},
    {u"Ayuda y legal", u"questionmark.circle", false, false, u"Ventana/PanelAyuda"},
    {u"Actualizar", u"arrow.triangle.2.circlepath"},
}};

struct Fila {
    Secciones::Seccion seccion;
    QString cabecera;
};

const QList<Fila> &filas()
{
    static const auto todas = [] {
        QList<Fila> lista;
        for (const auto &grupo : Secciones::grupos()) {
            for (const auto seccion : grupo.secciones)
                lista.append({seccion, seccion == grupo.secciones.first() ? grupo.cabecera : QString()});
        }
        return lista;
    }();
    return todas;
}

const Datos &datosDe(Secciones::Seccion seccion)
{
    return tabla[static_cast<std::size_t>(seccion)];
}

} // namespace

const QList<Secciones::Grupo> &Secciones::grupos()
{
    static const QList<Grupo> lista{
        {QString(), {Resumen}},
        {QStringLiteral("FOTOS"), {Fotos, BuscarFotos, Personas}},
        {QStringLiteral("COPIAS Y DATOS"), {Copias, BuscarTodo, Numeros}},
        {QStringLiteral("APPS Y ESPACIO"), {Apps, Espacio, Limpieza}},
        {QStringLiteral("CONTACTOS Y SEGURIDAD"), {Contactos, Claves, Seguridad, Familia}},
        {QStringLiteral("MÁS"), {Pantalla, Control, Actualizar, Ajustes, Ayuda}},
    };
    return lista;
}

QString Secciones::titulo(Seccion seccion)
{
    return QString::fromUtf16(datosDe(seccion).titulo);
}

QString Secciones::simbolo(Seccion seccion)
{
    return QString::fromUtf16(datosDe(seccion).simbolo);
}

bool Secciones::necesitaElIPhone(Seccion seccion)
{
    return datosDe(seccion).necesitaElIPhone;
}

bool Secciones::necesitaCopia(Seccion seccion)
{
    return datosDe(seccion).necesitaCopia;
}

std::optional<QString> Secciones::atajo(Seccion seccion)
{
    const auto lugar = static_cast<int>(seccion) + 1;
    return lugar <= 9 ? std::optional(QString::number(lugar)) : std::nullopt;
}

bool Secciones::disponible(Seccion seccion)
{
    return datosDe(seccion).vista != nullptr;
}

Secciones::Contenido Secciones::contenido(Seccion seccion, bool hayHerramientas, bool hayIPhone)
{
    if (!hayHerramientas)
        return FaltanHerramientas;
    return !hayIPhone && necesitaElIPhone(seccion) ? SinIPhone : LaSeccion;
}

int Secciones::porAtajo(int tecla)
{
    const auto lugar = tecla - Qt::Key_1;
    if (lugar < 0 || lugar > 8)
        return -1;
    return disponible(static_cast<Seccion>(lugar)) ? lugar : -1;
}

int Secciones::deInicio(int seccion)
{
    const bool hay = seccion >= Resumen && seccion <= Actualizar;
    return hay && disponible(static_cast<Seccion>(seccion)) ? seccion : Resumen;
}

QString Secciones::vista(Seccion seccion)
{
    const auto *fichero = datosDe(seccion).vista;
    return fichero ? QStringLiteral("qrc:/qt/qml/Vellora/%1.qml").arg(QString::fromUtf16(fichero)) : QString();
}

QString Secciones::enumerar(const QStringList &piezas)
{
    return piezas.join(QStringLiteral(" y "));
}

int Secciones::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(filas().size());
}

QVariant Secciones::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &[seccion, cabecera] = filas().at(indice.row());
    switch (papel) {
    case PapelSeccion:
        return static_cast<int>(seccion);
    case PapelTitulo:
        return titulo(seccion);
    case PapelSimbolo:
        return simbolo(seccion);
    case PapelCabecera:
        return cabecera;
    case PapelAtajo:
        return atajo(seccion).value_or(QString());
    case PapelNecesitaCopia:
        return necesitaCopia(seccion);
    case PapelDisponible:
        return disponible(seccion);
    default:
        return {};
    }
}

QHash<int, QByteArray> Secciones::roleNames() const
{
    return {{PapelSeccion, "seccion"},      {PapelTitulo, "titulo"}, {PapelSimbolo, "simbolo"},
            {PapelCabecera, "cabecera"},    {PapelAtajo, "atajo"},   {PapelNecesitaCopia, "necesitaCopia"},
            {PapelDisponible, "disponible"}};
}

} // namespace vellora
