#ifndef QELElementNames_H
#define QELElementNames_H

#include <string>
#include <string_view>

// The element names of the description and of the PDM side's answer, each
// spelled once. The writer writes them, the reader looks for them, and what
// reads, checks or answers descriptions outside the library takes them from
// here. Every constant is spelled as its element, so that a name found in a
// file is found in the source as it is.
namespace QELElement {

// ---- the frame: the root, its options and count, one entry's fields, the items of a list
inline constexpr char DESCFILE[] = "DESCFILE";
inline constexpr char Options[] = "Options";
inline constexpr char NBElements[] = "NBElements";
inline constexpr char Item_Info[] = "Item_Info";
inline constexpr char Attribut[] = "Attribut";

// ---- the options the description carries (the answer's options are read whatever their names)
inline constexpr char CATIAEnvironment[] = "CATIAEnvironment";
inline constexpr char SaveDesignTables[] = "SaveDesignTables";
inline constexpr char Single_Files[] = "Single_Files";
inline constexpr char Context[] = "Context";

// ---- the element that wraps an entry, named after its document's type (Unknown for a
// broken icon)
inline constexpr char CATProduct[] = "CATProduct";
inline constexpr char CATPart[] = "CATPart";
inline constexpr char CATDrawing[] = "CATDrawing";
inline constexpr char CATProcess[] = "CATProcess";
inline constexpr char CATAnalysis[] = "CATAnalysis";
inline constexpr char CATModel[] = "CATModel";
inline constexpr char DesignTable[] = "DesignTable";
inline constexpr char catalog[] = "catalog";
inline constexpr char Unknown[] = "Unknown";

// ---- an entry's fields, in the description and in the answer
inline constexpr char POINTER_ADDRESS[] = "POINTER_ADDRESS";
inline constexpr char InstanceName[] = "InstanceName";
inline constexpr char Occ_UID[] = "Occ_UID";
inline constexpr char Inst_Description[] = "Inst_Description";
inline constexpr char Parent_Part_Number[] = "Parent_Part_Number";
inline constexpr char Parent_Instance_Name[] = "Parent_Instance_Name";
inline constexpr char Parent_Doc_Name[] = "Parent_Doc_Name";
inline constexpr char Parent_DST_UID[] = "Parent_DST_UID";
inline constexpr char Parent_ItemRev_UID[] = "Parent_ItemRev_UID";
inline constexpr char Parent_Item_ID[] = "Parent_Item_ID";
inline constexpr char Parent_ItemRev_ID[] = "Parent_ItemRev_ID";
inline constexpr char Parent_Comp[] = "Parent_Comp";
inline constexpr char Matrix[] = "Matrix";
inline constexpr char Matrix_Action[] = "Matrix_Action";
inline constexpr char Part_Number[] = "Part_Number";
inline constexpr char DST_UID[] = "DST_UID";
inline constexpr char Type[] = "Type";
inline constexpr char Item_ID[] = "Item_ID";
inline constexpr char ItemRev_ID[] = "ItemRev_ID";
inline constexpr char ItemRev_UID[] = "ItemRev_UID";
inline constexpr char ItemRev_Name[] = "ItemRev_Name";
inline constexpr char DST_Version[] = "DST_Version";
inline constexpr char Date_Last_Modification[] = "Date_Last_Modification";
inline constexpr char NamedRef_UID[] = "NamedRef_UID";
inline constexpr char Old_Model_Name[] = "Old_Model_Name";
inline constexpr char BVR_Date[] = "BVR_Date";
inline constexpr char Nomenclature[] = "Nomenclature";
inline constexpr char File_Name[] = "File_Name";
inline constexpr char Old_File_Name[] = "Old_File_Name";
inline constexpr char File_Version[] = "File_Version";
inline constexpr char Check_Action[] = "Check_Action";
inline constexpr char MAJ[] = "MAJ";
inline constexpr char Modified_Flag[] = "Modified_Flag";
inline constexpr char Doc_UUID[] = "Doc_UUID";
inline constexpr char Mask[] = "Mask";
inline constexpr char IsDocSelected[] = "IsDocSelected";

// ---- the fields only the answer carries
inline constexpr char Occ_CreatedFlag[] = "Occ_CreatedFlag";
inline constexpr char Update_Flag[] = "Update_Flag";
inline constexpr char Synchronize_Flag[] = "Synchronize_Flag";
inline constexpr char Read_ActiveShapes[] = "Read_ActiveShapes";
inline constexpr char Calcul_Flag[] = "Calcul_Flag";
inline constexpr char ComputeGeo[] = "ComputeGeo";
inline constexpr char Load_Flag[] = "Load_Flag";

// ---- an entry's blocks, and the elements inside them
inline constexpr char Mapping_Attribut[] = "Mapping_Attribut";
inline constexpr char Mapping_Inst[] = "Mapping_Inst";
inline constexpr char AbsoluteMatrix[] = "AbsoluteMatrix";
inline constexpr char Element[] = "Element";
inline constexpr char VisibleOverrides[] = "VisibleOverrides";
inline constexpr char Visible[] = "Visible";
inline constexpr char Scenes[] = "Scenes";
inline constexpr char ScenesOverrides[] = "ScenesOverrides";
inline constexpr char SceneOverride[] = "SceneOverride";
inline constexpr char VTSkippedOcc[] = "VTSkippedOcc";
inline constexpr char Sheets[] = "Sheets";
inline constexpr char Active_Sheet[] = "Active_Sheet";
inline constexpr char LinkedDocs[] = "LinkedDocs";
inline constexpr char secondaries[] = "secondaries";
inline constexpr char secondary[] = "secondary";
inline constexpr char Shapes[] = "Shapes";
inline constexpr char SR[] = "SR";
inline constexpr char Components[] = "Components";
inline constexpr char ComponentName[] = "ComponentName";
inline constexpr char ActivateShapes[] = "ActivateShapes";
inline constexpr char DefaultShapeForCache[] = "DefaultShapeForCache";
inline constexpr char AnalysisFiles[] = "AnalysisFiles";
inline constexpr char AnalysisResultsFiles[] = "AnalysisResultsFiles";
inline constexpr char AnalysisComputeFiles[] = "AnalysisComputeFiles";
inline constexpr char Externals[] = "Externals";
inline constexpr char Auxiliaries[] = "Auxiliaries";
inline constexpr char Configuration[] = "Configuration";

// ---- design tables: an owner's summaries and a table's own lists
inline constexpr char DT_Files[] = "DT_Files";
inline constexpr char DT_Sheets[] = "DT_Sheets";
inline constexpr char DT_Cfgs[] = "DT_Cfgs";
inline constexpr char DT_Map[] = "DT_Map";
inline constexpr char DT_Maps[] = "DT_Maps";
inline constexpr char DT_CfgCksums[] = "DT_CfgCksums";
inline constexpr char DesignTable_Name[] = "DesignTable_Name";
inline constexpr char DesignTable_File[] = "DesignTable_File";

// ---- the composites tree of a part
inline constexpr char PartComposites[] = "PartComposites";
inline constexpr char Stacking[] = "Stacking";
inline constexpr char PliesGroup[] = "PliesGroup";
inline constexpr char Sequence[] = "Sequence";
inline constexpr char Ply[] = "Ply";
inline constexpr char Material[] = "Material";
inline constexpr char COGPosition[] = "COGPosition";
inline constexpr char Inertia[] = "Inertia";
inline constexpr char Direction[] = "Direction";
inline constexpr char SurfacicMass[] = "SurfacicMass";
inline constexpr char Mass[] = "Mass";
inline constexpr char WetArea[] = "WetArea";

// ---- the status window's and the catalog browser's document lists
inline constexpr char doc[] = "doc";
inline constexpr char filename[] = "filename";
inline constexpr char revuid[] = "revuid";
inline constexpr char dstuid[] = "dstuid";
inline constexpr char namedrefuid[] = "namedrefuid";

// The lines that open and close an element: "<name>" and "</name>".
inline std::string openingLine(std::string_view name) { return std::string("<").append(name) += '>'; }
inline std::string closingLine(std::string_view name) { return std::string("</").append(name) += '>'; }

} // namespace QELElement

#endif
