#include "ui/componentes/GuardarComo.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace vellora
{

void GuardarComo::abrir(const QString &nombre)
{
    auto *dialogo = new QFileDialog;
    dialogo->setAttribute(Qt::WA_DeleteOnClose);
    dialogo->setAcceptMode(QFileDialog::AcceptSave);
    dialogo->setWindowTitle(titulo);
    dialogo->setNameFilter(filtro);
    dialogo->setDefaultSuffix(extension);
    dialogo->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    // A name of the phone is no path.
    dialogo->selectFile(QString(nombre).replace(QLatin1Char('/'), QLatin1Char('-')));
    connect(dialogo, &QFileDialog::fileSelected, this, &GuardarComo::elegido);
    connect(this, &QObject::destroyed, dialogo, &QWidget::close);
    dialogo->open();
}

} // namespace vellora
