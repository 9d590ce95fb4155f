#include "tests/frame/catalogue.h"

#include <algorithm>
#include <stdexcept>

namespace catalogue {
namespace {

constexpr std::wstring_view kRecordHead[] = {
    L"1 get ID([out,retval] long* pVal) hidden: Internal record number.",
    L"1 put ID([in] long) hidden: Internal record number.",
    L"2 get IsDirty([out,retval] long* pVal) hidden: Returns TRUE if object contains unsaved "
    L"information.",
    L"3 method LoadFromCurrentRecordsetPosition([in] IDispatch* pModelDatabase, [in] IDispatch* "
    L"pRs, [in] BSTR bstrTableAlias) hidden: Loads the object from the current recordset position.",
    L"4 method Save([in] IDispatch* pModelDatabase, [in,opt] VARIANT vCascadeDown, [in,opt] "
    L"VARIANT vCascadeUp) hidden: Saves the object to the passed database.",
    L"5 method Delete([in] IDispatch* pModelDatabase) hidden: Deletes the object from the passed "
    L"database.",
    L"200 get SqlString([in] long ossType, [out,retval] BSTR* pVal) hidden: Returns the specified "
    L"SQL helper string.",
    L"201 method FileOpHelper([in] IDispatch* pModelDatabase, [in] long fohType, [in,opt] VARIANT "
    L"vCascadeDown, [in,opt] VARIANT vCascadeUp) hidden: Callback to the object to do object "
    L"specific file operations.",
    L"202 get EventObjectType([out,retval] long* pVal) hidden: Returns the event record type.",
    // Apart from its get: the order of the virtual table.
    L"2 put IsDirty([in] long) hidden: Returns TRUE if object contains unsaved information.",
    L"6 get Description([out,retval] BSTR* pVal): Gets/sets the object's description.",
    L"6 put Description([in] BSTR): Gets/sets the object's description.",
    L"15 get Vertex([out,retval] IDispatch** pVal): Gets/Sets the Vertex object associated with "
    L"this object.",
    L"15 putref Vertex([in] IDispatch*): Gets/Sets the Vertex object associated with this "
    L"object.",
};

// Where RECORD stands, the kind's record interface.
constexpr std::wstring_view kCollection[] = {
    L"0 method Item([in] int Index, [out,retval] RECORD** pVal): Retrieves the object at the given "
    L"index from this collection.",
    L"1 method Add([in] RECORD* pNewVal): Adds the passed object to this collection. (Use the Save "
    L"method to commit the object to the database)",
    L"2 get Count([out,retval] long* pVal): Returns the number of objects in this collection.",
    L"3 method Remove([in] int Index): Removes the indicated item from this collection. (Use "
    L"Delete to remove the object from the database)",
    L"-4 get _NewEnum([out,retval] IUnknown** pVal) restricted: property _NewEnum",
    L"4 method Save([in] IDispatch* pModelDatabase, [in,opt] VARIANT vCascadeDown, [in,opt] "
    L"VARIANT vCascadeUp) hidden: Saves all of the items in the collection to the database.",
    L"5 method Delete([in] IDispatch* pModelDatabase) hidden: Deletes all of the items in the "
    L"collection from the database.",
    L"6 method GetIndexById([in] long lId, [out,retval] long* plIndex) hidden: Gets the index of "
    L"the passed ID or -1 if not found in the collection.",
    L"7 method Clear(): Clears this collection.",
};

// One number means one property, whichever record has it; only 16 serves two.
constexpr Property kProperties[] = {
    {16, L"ConstraintSets", L"IDispatch*",
     L"Gets/Sets the Constraint Set collection associated with this object."},
    {16, L"DesignScenarios", L"IDispatch*",
     L"Gets/Sets the design scenario collection associated with this object."},
    {17, L"LoadSets", L"IDispatch*",
     L"Gets/Sets the Load Set collection associated with this object."},
    {18, L"Magnitude", L"double", L"Gets/Sets the magnitude of this object."},
    {19, L"Vx", L"double", L"Gets/Sets the vector's X component."},
    {20, L"Vy", L"double", L"Gets/Sets the vector's Y component."},
    {21, L"Vz", L"double", L"Gets/Sets the vector's Z component."},
    {22, L"Tx", L"VARIANT_BOOL", L"Gets/Sets the translational freedom along the X axis."},
    {23, L"Ty", L"VARIANT_BOOL", L"Gets/Sets the translational freedom along the Y axis."},
    {24, L"Tz", L"VARIANT_BOOL", L"Gets/Sets the translational freedom along the Z axis."},
    {25, L"Rx", L"VARIANT_BOOL", L"Gets/Sets the rotational freedom about the X axis."},
    {26, L"Ry", L"VARIANT_BOOL", L"Gets/Sets the rotational freedom about the Y axis."},
    {27, L"Rz", L"VARIANT_BOOL", L"Gets/Sets the rotational freedom about the Z axis."},
    {28, L"MultiplierID", L"long",
     L"Gets/Sets the multiplier table identifier linked to this object."},
    {29, L"MagnitudeX", L"double", L"Gets/Sets the magnitude in the X direction for this object."},
    {30, L"MagnitudeY", L"double", L"Gets/Sets the magnitude in the Y direction for this object."},
    {31, L"MagnitudeZ", L"double", L"Gets/Sets the magnitude in the Z direction for this object."},
    {32, L"Stiffness", L"double", L"Gets/Sets the stiffness of this object."},
    {33, L"IsRotate", L"VARIANT_BOOL",
     L"True if load is rotational. False if it is translational."},
    {34, L"FixedX", L"VARIANT_BOOL", L"Gets/Sets the fixity in the X axis."},
    {35, L"FixedY", L"VARIANT_BOOL", L"Gets/Sets the fixity in the Y axis."},
    {36, L"FixedZ", L"VARIANT_BOOL", L"Gets/Sets the fixity in the Z axis."},
    {37, L"UseX", L"VARIANT_BOOL", L"Gets/Sets the if the X value is used."},
    {38, L"UseY", L"VARIANT_BOOL", L"Gets/Sets the if the Y value is used."},
    {39, L"UseZ", L"VARIANT_BOOL", L"Gets/Sets the if the Z value is used."},
    {40, L"Direction", L"ScalarVector",
     L"Gets/Sets the direction of this object. "
     L"0 = Scalar X, 1 = Scalar Y, 2 = Scalar Z, 3 = Vector"},
    {41, L"ActiveRangeID", L"long", L"Gets/Sets the active range linked to this object."},
    {42, L"CoordinateSystemID", L"long",
     L"Gets/Sets the CoordinateSystem table ID linked to this object."},
    {43, L"Wx", L"double", L"Gets/Sets the x-dir weight of this object."},
    {44, L"Wy", L"double", L"Gets/Sets the y-dir weight of this object."},
    {45, L"Wz", L"double", L"Gets/Sets the z-dir weight of this object."},
    {46, L"Mx", L"double", L"Gets/Sets the x-dir mass moment of inertia of this object."},
    {47, L"My", L"double", L"Gets/Sets the y-dir mass moment of inertia of this object."},
    {48, L"Mz", L"double", L"Gets/Sets the z-dir mass moment of inertia of this object."},
    {49, L"UseMassUnits", L"VARIANT_BOOL",
     L"True if mass/weight is entered as mass. False if entered as weight."},
    {50, L"Scale", L"double", L"Gets/Sets the scale value for this object."},
    {51, L"ActivationTime", L"double", L"Gets/Sets the activation time for this object."},
    {52, L"IsTimeVarying", L"VARIANT_BOOL",
     L"True the value of this varies with time. False otherwise."},
    {100, L"Type", L"long", L"property Type"},
    {101, L"UseSeparateWindow", L"long", L"property UseSeparateWindow"},
};

void append_accessors(const Property& property, std::vector<std::wstring>& members) {
  const std::wstring number = std::to_wstring(property.dispid);
  const std::wstring name(property.name);
  const std::wstring type(property.type);
  const std::wstring end = L"): " + std::wstring(property.help);
  members.push_back(number + L" get " + name + L"([out,retval] " + type + L"* pVal" + end);
  members.push_back(number + (property.is_reference() ? L" putref " : L" put ") + name + L"([in] " +
                    type + end);
}

std::wstring with_record(std::wstring_view line, std::wstring_view record) {
  constexpr std::wstring_view kPlaceholder = L"RECORD";
  std::wstring result(line);
  const std::size_t at = result.find(kPlaceholder);
  if (at != std::wstring::npos) {
    result.replace(at, kPlaceholder.size(), L"I" + std::wstring(record));
  }
  return result;
}

}  // namespace

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> kinds = {
      {L"NodalBoundaryCondition",
       L"NodalBoundaryConditions",
       {L"Tx", L"Ty", L"Tz", L"Rx", L"Ry", L"Rz", L"ConstraintSets"}},
      {L"NodalForce",
       L"NodalForces",
       {L"Magnitude", L"Vx", L"Vy", L"Vz", L"MultiplierID", L"LoadSets", L"CoordinateSystemID"}},
      {L"NodalLumpedMass",
       L"NodalLumpedMasses",
       {L"Wx", L"Wy", L"Wz", L"Mx", L"My", L"Mz", L"UseMassUnits", L"LoadSets"}},
      {L"NodalTemperature", L"NodalTemperatures", {L"Magnitude", L"LoadSets"}},
      {L"NodalVoltage", L"NodalVoltages", {L"Magnitude", L"LoadSets"}},
      {L"NodalMoment",
       L"NodalMoments",
       {L"Magnitude", L"Vx", L"Vy", L"Vz", L"MultiplierID", L"LoadSets", L"CoordinateSystemID"}},
      {L"NodalPrescribedVelocity",
       L"NodalPrescribedVelocities",
       {L"LoadSets", L"MagnitudeX", L"MagnitudeY", L"MagnitudeZ", L"UseX", L"UseY", L"UseZ"}},
      {L"NodalPrescribedDisplacement",
       L"NodalPrescribedDisplacements",
       {L"IsRotate", L"Direction", L"Vx", L"Vy", L"Vz", L"Magnitude", L"ActiveRangeID",
        L"MultiplierID", L"LoadSets"}},
      {L"NodalAppliedTemperature",
       L"NodalAppliedTemperatures",
       {L"Magnitude", L"Stiffness", L"MultiplierID", L"LoadSets", L"Scale", L"ActivationTime",
        L"IsTimeVarying"}},
      {L"NodalAppliedVoltage", L"NodalAppliedVoltages", {L"Magnitude", L"Stiffness", L"LoadSets"}},
      {L"NodalRigidBoundary",
       L"NodalRigidBoundaries",
       {L"FixedX", L"FixedY", L"FixedZ", L"Stiffness", L"IsRotate", L"ConstraintSets"}},
      {L"NodalElasticBoundary",
       L"NodalElasticBoundaries",
       {L"Vx", L"Vy", L"Vz", L"Stiffness", L"IsRotate", L"ConstraintSets"}},
      {L"NodalDisplacementBoundary",
       L"NodalDisplacementBoundaries",
       {L"Magnitude", L"Vx", L"Vy", L"Vz", L"Stiffness", L"IsRotate", L"ConstraintSets"}},
      {L"NodalHeatSource",
       L"NodalHeatSources",
       {L"Magnitude", L"MultiplierID", L"LoadSets", L"ActivationTime"}},
      {L"NodalProbe", L"NodalProbes", {L"Type", L"UseSeparateWindow", L"DesignScenarios"}},
      {L"NodalPrescribedInOutlet", L"NodalPrescribedInOutlets", {L"LoadSets", L"Type"}},
      {L"NodalCurrent", L"NodalCurrents", {L"Magnitude", L"LoadSets"}},
      {L"NodalCharge", L"NodalCharges", {L"Magnitude", L"LoadSets"}},
  };
  return kinds;
}

const Property& property(std::wstring_view name) {
  const auto found = std::ranges::find(kProperties, name, &Property::name);
  if (found == std::end(kProperties)) throw std::out_of_range("no such property");
  return *found;
}

std::vector<std::wstring> record_members(const Kind& kind) {
  std::vector<std::wstring> members(std::begin(kRecordHead), std::end(kRecordHead));
  for (const std::wstring_view name : kind.properties) append_accessors(property(name), members);
  return members;
}

std::vector<std::wstring> collection_members(const Kind& kind) {
  std::vector<std::wstring> members;
  for (const std::wstring_view line : kCollection) {
    members.push_back(with_record(line, kind.record));
  }
  return members;
}

}  // namespace catalogue
