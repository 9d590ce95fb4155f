#include "tests/frame/catalogue.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace catalogue {
namespace {

constexpr std::string_view kRecordHead[] = {
    "1 get ID([out,retval] long* pVal) hidden: Internal record number.",
    "1 put ID([in] long) hidden: Internal record number.",
    "2 get IsDirty([out,retval] long* pVal) hidden: Returns TRUE if object contains unsaved "
    "information.",
    "3 method LoadFromCurrentRecordsetPosition([in] IDispatch* pModelDatabase, [in] IDispatch* "
    "pRs, [in] BSTR bstrTableAlias) hidden: Loads the object from the current recordset position.",
    "4 method Save([in] IDispatch* pModelDatabase, [in,opt] VARIANT vCascadeDown, [in,opt] "
    "VARIANT vCascadeUp) hidden: Saves the object to the passed database.",
    "5 method Delete([in] IDispatch* pModelDatabase) hidden: Deletes the object from the passed "
    "database.",
    "200 get SqlString([in] long ossType, [out,retval] BSTR* pVal) hidden: Returns the specified "
    "SQL helper string.",
    "201 method FileOpHelper([in] IDispatch* pModelDatabase, [in] long fohType, [in,opt] VARIANT "
    "vCascadeDown, [in,opt] VARIANT vCascadeUp) hidden: Callback to the object to do object "
    "specific file operations.",
    "202 get EventObjectType([out,retval] long* pVal) hidden: Returns the event record type.",
    // Apart from its get: the order of the virtual table.
    "2 put IsDirty([in] long) hidden: Returns TRUE if object contains unsaved information.",
    "6 get Description([out,retval] BSTR* pVal): Gets/sets the object's description.",
    "6 put Description([in] BSTR): Gets/sets the object's description.",
    "15 get Vertex([out,retval] IDispatch** pVal): Gets/Sets the Vertex object associated with "
    "this object.",
    "15 putref Vertex([in] IDispatch*): Gets/Sets the Vertex object associated with this "
    "object.",
};

// Where RECORD stands, the kind's record interface.
constexpr std::string_view kCollection[] = {
    "0 method Item([in] int Index, [out,retval] RECORD** pVal): Retrieves the object at the given "
    "index from this collection.",
    "1 method Add([in] RECORD* pNewVal): Adds the passed object to this collection. (Use the Save "
    "method to commit the object to the database)",
    "2 get Count([out,retval] long* pVal): Returns the number of objects in this collection.",
    "3 method Remove([in] int Index): Removes the indicated item from this collection. (Use "
    "Delete to remove the object from the database)",
    "-4 get _NewEnum([out,retval] IUnknown** pVal) restricted: property _NewEnum",
    "4 method Save([in] IDispatch* pModelDatabase, [in,opt] VARIANT vCascadeDown, [in,opt] "
    "VARIANT vCascadeUp) hidden: Saves all of the items in the collection to the database.",
    "5 method Delete([in] IDispatch* pModelDatabase) hidden: Deletes all of the items in the "
    "collection from the database.",
    "6 method GetIndexById([in] long lId, [out,retval] long* plIndex) hidden: Gets the index of "
    "the passed ID or -1 if not found in the collection.",
    "7 method Clear(): Clears this collection.",
};

/// A property as the library describes it. References are put by reference.
struct Property {
  long dispid;
  std::string_view name;
  std::string_view type;
  std::string_view help;

  [[nodiscard]] bool is_reference() const { return type == "IDispatch*"; }
};

// One number means one property, whichever record has it; only 16 serves two.
constexpr Property kProperties[] = {
    {16, "ConstraintSets", "IDispatch*",
     "Gets/Sets the Constraint Set collection associated with this object."},
    {16, "DesignScenarios", "IDispatch*",
     "Gets/Sets the design scenario collection associated with this object."},
    {17, "LoadSets", "IDispatch*",
     "Gets/Sets the Load Set collection associated with this object."},
    {18, "Magnitude", "double", "Gets/Sets the magnitude of this object."},
    {19, "Vx", "double", "Gets/Sets the vector's X component."},
    {20, "Vy", "double", "Gets/Sets the vector's Y component."},
    {21, "Vz", "double", "Gets/Sets the vector's Z component."},
    {22, "Tx", "VARIANT_BOOL", "Gets/Sets the translational freedom along the X axis."},
    {23, "Ty", "VARIANT_BOOL", "Gets/Sets the translational freedom along the Y axis."},
    {24, "Tz", "VARIANT_BOOL", "Gets/Sets the translational freedom along the Z axis."},
    {25, "Rx", "VARIANT_BOOL", "Gets/Sets the rotational freedom about the X axis."},
    {26, "Ry", "VARIANT_BOOL", "Gets/Sets the rotational freedom about the Y axis."},
    {27, "Rz", "VARIANT_BOOL", "Gets/Sets the rotational freedom about the Z axis."},
    {28, "MultiplierID", "long",
     "Gets/Sets the multiplier table identifier linked to this object."},
    {29, "MagnitudeX", "double", "Gets/Sets the magnitude in the X direction for this object."},
    {30, "MagnitudeY", "double", "Gets/Sets the magnitude in the Y direction for this object."},
    {31, "MagnitudeZ", "double", "Gets/Sets the magnitude in the Z direction for this object."},
    {32, "Stiffness", "double", "Gets/Sets the stiffness of this object."},
    {33, "IsRotate", "VARIANT_BOOL", "True if load is rotational. False if it is translational."},
    {34, "FixedX", "VARIANT_BOOL", "Gets/Sets the fixity in the X axis."},
    {35, "FixedY", "VARIANT_BOOL", "Gets/Sets the fixity in the Y axis."},
    {36, "FixedZ", "VARIANT_BOOL", "Gets/Sets the fixity in the Z axis."},
    {37, "UseX", "VARIANT_BOOL", "Gets/Sets the if the X value is used."},
    {38, "UseY", "VARIANT_BOOL", "Gets/Sets the if the Y value is used."},
    {39, "UseZ", "VARIANT_BOOL", "Gets/Sets the if the Z value is used."},
    {40, "Direction", "ScalarVector",
     "Gets/Sets the direction of this object. "
     "0 = Scalar X, 1 = Scalar Y, 2 = Scalar Z, 3 = Vector"},
    {41, "ActiveRangeID", "long", "Gets/Sets the active range linked to this object."},
    {42, "CoordinateSystemID", "long",
     "Gets/Sets the CoordinateSystem table ID linked to this object."},
    {43, "Wx", "double", "Gets/Sets the x-dir weight of this object."},
    {44, "Wy", "double", "Gets/Sets the y-dir weight of this object."},
    {45, "Wz", "double", "Gets/Sets the z-dir weight of this object."},
    {46, "Mx", "double", "Gets/Sets the x-dir mass moment of inertia of this object."},
    {47, "My", "double", "Gets/Sets the y-dir mass moment of inertia of this object."},
    {48, "Mz", "double", "Gets/Sets the z-dir mass moment of inertia of this object."},
    {49, "UseMassUnits", "VARIANT_BOOL",
     "True if mass/weight is entered as mass. False if entered as weight."},
    {50, "Scale", "double", "Gets/Sets the scale value for this object."},
    {51, "ActivationTime", "double", "Gets/Sets the activation time for this object."},
    {52, "IsTimeVarying", "VARIANT_BOOL",
     "True the value of this varies with time. False otherwise."},
    {100, "Type", "long", "property Type"},
    {101, "UseSeparateWindow", "long", "property UseSeparateWindow"},
};

const Property& property(std::string_view name) {
  const auto found = std::ranges::find(kProperties, name, &Property::name);
  if (found == std::end(kProperties)) throw std::out_of_range("no such property");
  return *found;
}

void append_accessors(const Property& property, std::vector<std::string>& members) {
  const std::string number = std::to_string(property.dispid);
  const std::string name(property.name);
  const std::string type(property.type);
  const std::string end = "): " + std::string(property.help);
  members.push_back(number + " get " + name + "([out,retval] " + type + "* pVal" + end);
  members.push_back(number + (property.is_reference() ? " putref " : " put ") + name + "([in] " +
                    type + end);
}

std::string with_record(std::string_view line, std::string_view record) {
  constexpr std::string_view kPlaceholder = "RECORD";
  std::string result(line);
  const std::size_t at = result.find(kPlaceholder);
  if (at != std::string::npos) {
    result.replace(at, kPlaceholder.size(), "I" + std::string(record));
  }
  return result;
}

}  // namespace

std::vector<std::string> record_members(const ExpectedKind& kind) {
  std::vector<std::string> members(std::begin(kRecordHead), std::end(kRecordHead));
  for (const std::string& name : kind.properties) append_accessors(property(name), members);
  return members;
}

std::vector<std::string> collection_members(const ExpectedKind& kind) {
  std::vector<std::string> members;
  for (const std::string_view line : kCollection) {
    members.push_back(with_record(line, kind.record));
  }
  return members;
}

}  // namespace catalogue
