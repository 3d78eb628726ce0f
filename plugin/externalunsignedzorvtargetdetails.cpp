// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "plugin/externalunsignedzorvtargetdetails.h"

#include "ui_externalunsignedzorvtargetdetails.h"

ExternalUnsignedZorvTargetDetails::ExternalUnsignedZorvTargetDetails(QWidget *parent)
    : QWidget(parent)
    , form(new Ui_ExternalUnsignedZorvTargetDetails)
{
    form->setupUi(this);
}

ExternalUnsignedZorvTargetDetails::~ExternalUnsignedZorvTargetDetails()
{
    delete form;
}
