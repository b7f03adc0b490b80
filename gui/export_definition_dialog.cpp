#include "gui/export_definition_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

ExportDefinitionDialog::ExportDefinitionDialog(ExportDefinitionPicker& picker, QWidget* parent)
    : QDialog(parent), picker_(picker) {
  setWindowTitle(QString::fromLatin1(kSelectExportDefinitionTitle));
  setModal(true);

  names_ = new QComboBox(this);
  names_->setEditable(true);
  names_->setInsertPolicy(QComboBox::NoInsert);
  names_->setMinimumWidth(260);
  for (const ExportDefinitionItem& item : picker_.items()) {
    names_->addItem(FromWindowsText(item.name));
  }
  names_->setCurrentIndex(-1);
  names_->setEditText(FromWindowsText(picker_.name()));

  auto* applies = new QGroupBox(QStringLiteral("Applies To"), this);
  auto* applies_layout = new QVBoxLayout(applies);
  company_ = new QRadioButton(QString::fromLatin1(kAppliesToCompany), applies);
  all_ = new QRadioButton(QString::fromLatin1(kAppliesToAll), applies);
  applies_layout->addWidget(company_);
  applies_layout->addWidget(all_);
  (picker_.scope() == ExportScope::kAllCompanies ? all_ : company_)->setChecked(true);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Export Definition:"), names_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(applies);
  layout->addWidget(buttons);

  // Picking an item brings its scope with it; two items may share a name, so go by row.
  connect(names_, &QComboBox::activated, this, [this](int row) {
    if (row < 0) return;
    picker_.Pick(static_cast<size_t>(row));
    (picker_.scope() == ExportScope::kAllCompanies ? all_ : company_)->setChecked(true);
  });
  connect(buttons, &QDialogButtonBox::accepted, this, &ExportDefinitionDialog::Ok);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void ExportDefinitionDialog::Ok() {
  picker_.SetName(ToWindowsText(names_->currentText()));
  picker_.SetScope(all_->isChecked() ? ExportScope::kAllCompanies : ExportScope::kThisCompany);
  if (picker_.Accept()) accept();
}

}  // namespace nv
