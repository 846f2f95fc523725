// SPDX-License-Identifier: MIT

#include "mfcurves/documents/formatTexts.h"

#include <algorithm>

#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mf::documents {

namespace {

constexpr TextTable::Entry kFunctionTypeTexts[] = {
    {FunctionType_Segments, L"Segments"},
    {FunctionType_DataPoints, L"DataPoints"},
    {FunctionType_Expression, L"Expression"},
};

constexpr TextTable::Entry kMotionObjectTypeTexts[] = {
    {MotionObjectType_Motor, L"Motor"},
    {MotionObjectType_Force, L"Force"},
    {MotionObjectType_Torque, L"Torque"},
};

// Without MfXY_Misc, which is used for every other number in writing and for every
// other text in reading.
constexpr TextTable::Entry kXYDataTypeTexts[] = {
    {MfXY_None, L"MfXY_None"},
    {MfXY_Disp_LinMotor, L"MfXY_Disp_LinMotor"},
    {MfXY_Vel_LinMotor, L"MfXY_Vel_LinMotor"},
    {MfXY_Acc_LinMotor, L"MfXY_Acc_LinMotor"},
    {MfXY_Disp_RotMotor, L"MfXY_Disp_RotMotor"},
    {MfXY_Vel_RotMotor, L"MfXY_Vel_RotMotor"},
    {MfXY_Acc_RotMotor, L"MfXY_Acc_RotMotor"},
    {MfXY_Disp_PathMateMotor, L"MfXY_Disp_PathMateMotor"},
    {MfXY_Vel_PathMateMotor, L"MfXY_Vel_PathMateMotor"},
    {MfXY_Acc_PathMateMotor, L"MfXY_Acc_PathMateMotor"},
    {MfXY_Force, L"MfXY_Force"},
    {MfXY_Torque, L"MfXY_Torque"},
};

constexpr TextTable::Entry kIndependentVariableTexts[] = {
    {IndependentVariableType_Time, L"IndependentVariableType_Time"},
    {IndependentVariableType_CycleAngle, L"IndependentVariableType_CycleAngle"},
};

constexpr TextTable::Entry kMotorDriveTypeTexts[] = {
    {MotorDriveType_Displacment, L"MotorDriveType_Displacment"},
    {MotorDriveType_Velocity, L"MotorDriveType_Velocity"},
    {MotorDriveType_Acceleration, L"MotorDriveType_Acceleration"},
};

constexpr TextTable::Entry kForceTorqueTypeTexts[] = {
    {ForceTorqueType_Force, L"ForceTorqueType_Force"},
    {ForceTorqueType_Torque, L"ForceTorqueType_Torque"},
};

constexpr TextTable::Entry kInterpolationTypeTexts[] = {
    {DataPointInterpolationType_Linear, L"DataPointInterpolationType_Linear"},
    {DataPointInterpolationType_Cubic, L"DataPointInterpolationType_Cubic"},
    {DataPointInterpolationType_Akima, L"DataPointInterpolationType_Akima"},
};

}  // namespace

const TextTable kFunctionTypes{kFunctionTypeTexts};
const TextTable kMotionObjectTypes{kMotionObjectTypeTexts};
const TextTable kXYDataTypes{kXYDataTypeTexts};
const TextTable kIndependentVariables{kIndependentVariableTexts};
const TextTable kMotorDriveTypes{kMotorDriveTypeTexts};
const TextTable kForceTorqueTypes{kForceTorqueTypeTexts};
const TextTable kInterpolationTypes{kInterpolationTypeTexts};

std::optional<int> TextTable::numberOf(const CString& text) const
{
    for (const Entry& entry : entries_)
        if (text == entry.text)
            return entry.number;
    return std::nullopt;
}

const wchar_t* TextTable::textOf(int number, const wchar_t* otherwise) const
{
    for (const Entry& entry : entries_)
        if (entry.number == number)
            return entry.text;
    return otherwise;
}

std::string TextTable::list() const
{
    std::string texts;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (i > 0)
            texts += i + 1 == entries_.size() ? " or " : ", ";
        texts += '"' + platform::toUtf8(entries_[i].text) + '"';
    }
    return texts;
}

namespace {

double lastVersion = kReadableVersion;

}  // namespace

double writtenVersion()
{
    return lastVersion;
}

void setWrittenVersion(double version)
{
    lastVersion = version;
}

std::string versionText(double version)
{
    return platform::formatNumber("%.6G", version);
}

}  // namespace mf::documents
