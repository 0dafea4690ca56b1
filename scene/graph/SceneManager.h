#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventBase.h"
#include "core_api/logger/Logger.h"

#include "scene/SceneExport.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/graph/UpAxis.h"

namespace vantorix::core::system {
class IClock;
}

namespace vantorix::scene {

class Animation;
class AnimationManager;
class CameraInstance;
class Controller;
class Effect;
class Evaluator;
class GeometryManager;
class Image;
class ISceneController;
class LayerManager;
class Material;
class Node;
class NodeIndex;
class PhysicsMaterial;
class PhysicsModel;
class PhysicsScene;
class SceneIdentifiers;
class SceneLife;
class SceneSync;

/// One scene: its tree, its libraries, its clock, and the thread that drives its controllers.
///
/// Must be held by a boost::shared_ptr. Owns root, libraries and managers; library items are shared
/// with whoever uses them. Releasing the last reference ends the thread and frees the scene, with
/// or without stop(), on any thread.
/// Look-ups compare byte-wise, return the first match in library or tree order and an empty pointer
/// when there is none. Empty pointers given to add and set operations are ignored unless said
/// otherwise.
/// Threads: while the synchronisation thread runs, edit the scene, its libraries included, between
/// lockScene() and unlockScene(). Events are delivered on the thread that makes the change, with no
/// lock of the library held, except that a scene controller edits, and so announces, under the
/// locks of its cycle; "SyncScene" follows on the synchronisation thread under none.
class VANTORIX_SCENE_EXPORT SceneManager : public core::event::EventBase,
                                           public boost::enable_shared_from_this<SceneManager> {
public:
    /// Makes a running scene with the default effect and material; returns once its thread runs.
    /// Sends "SceneUpdate" ("MaterialList") for the default material.
    explicit SceneManager(boost::shared_ptr<core::event::EventManager> eventManager);
    ~SceneManager() override;

    /// @name Running
    /// @{
    /// Ends the synchronisation thread and detaches the scene from its event manager: no event
    /// follows. May be called twice, from any thread and from a handler; a caller that holds the
    /// scene lock gives it up while it waits for the thread.
    void stop();

    /// The scene lock. A thread may take it several times; unlocking what the calling thread does
    /// not hold does nothing.
    void lockScene();
    void unlockScene();

    /// Replaces the event manager for this scene, its nodes and its geometry manager. May be empty.
    void setEventManager(boost::shared_ptr<core::event::EventManager> eventManager) override;

    boost::shared_ptr<core::system::IClock> getClock() const;
    void setClock(boost::shared_ptr<core::system::IClock> clock);

    /// Appends @p controller and attaches it to this scene. Waits for a cycle in progress.
    void addSceneController(boost::shared_ptr<ISceneController> controller);
    /// Erases the matching pointer; once this returned, no update of it begins.
    void removeSceneController(boost::shared_ptr<ISceneController> controller);
    /// @}

    /// @name Identifiers
    /// @{
    /// "OID" and the next number whose text was not recorded with addID. The result counts as used
    /// only once it is passed to addID.
    std::string generateID();
    /// Records @p id if it begins with "OID": no other identifier can clash with a generated one.
    void addID(std::string id);
    /// @}

    /// @name Description
    /// @{
    std::string getSceneID() const { return sceneID_; }
    void setSceneID(std::string id);
    std::string getSceneName() const { return sceneName_; }
    void setSceneName(std::string name) { sceneName_ = std::move(name); }
    /// Metres per unit of length.
    float getMeterUnit() const { return meterUnit_; }
    void setMeterUnit(float meters) { meterUnit_ = meters; }
    UpAxis getUpAxis() const { return upAxis_; }
    void setUpAxis(UpAxis axis) { upAxis_ = axis; }
    /// The image around the scene.
    boost::shared_ptr<Image> getSurrounding() const { return surrounding_; }
    /// Adds @p image to the library when it is not there; empty clears. Sends
    /// "SceneSurroundingUpdate".
    void setSurrounding(boost::shared_ptr<Image> image);
    /// @}

    /// @name Managers
    /// @{
    boost::shared_ptr<GeometryManager> getGeometryManager() const { return geometryManager_; }
    /// Records the IDs of the manager's geometries and gives it this scene's event manager.
    void setGeometryManager(boost::shared_ptr<GeometryManager> manager);
    boost::shared_ptr<LayerManager> getLayerManager() const { return layerManager_; }
    /// Empty until one is set. Setting it, also to empty, neither attaches nor drives it.
    boost::shared_ptr<AnimationManager> getAnimationManager() const { return animationManager_; }
    void setAnimationManager(boost::shared_ptr<AnimationManager> manager);
    /// @}

    /// @name Tree
    /// @{
    /// The root, made on first demand.
    boost::shared_ptr<Node> getRoot();
    void setRoot(boost::shared_ptr<Node> root);
    /// First match of a depth-first search from the root. Takes constant time for a text that one
    /// node carries, however large the tree.
    boost::shared_ptr<Node> getNodeByID(std::string id) const;
    boost::shared_ptr<Node> getNodeByName(std::string name) const;
    /// All nodes, depth first, each before its children; empty without a root.
    std::vector<boost::shared_ptr<Node>> getNodeArray() const;
    /// Lets the parent remove @p node; a node without parent is left alone.
    void removeNode(boost::shared_ptr<Node> node);
    /// Deliberate: looks the node up by name, not by ID.
    void removeNodeByID(std::string id);
    /// @}

    /// @name Images
    /// @{
    /// Discards @p image, with a warning, when one of the same ID and file name is there; otherwise
    /// appends it and sends "SceneUpdate".
    /// Deliberate: an image whose ID is taken under another file name uses up a generated ID, which
    /// Image::setID ignores, and stands in the library under the repeated one.
    void addImage(boost::shared_ptr<Image> image);
    unsigned int getImageCount() const;
    boost::shared_ptr<Image> getImageAt(unsigned int index) const;
    boost::shared_ptr<Image> getImageByID(std::string id) const;
    /// The image stored under the last path component of @p fileName, else under all of it.
    boost::shared_ptr<Image> getImageByFilename(std::string fileName) const;
    std::vector<boost::shared_ptr<Image>> getImageLibrary() const { return imageLibrary_; }
    void setImageLibrary(std::vector<boost::shared_ptr<Image>> images);
    /// @}

    /// @name Effects
    /// @{
    void addEffect(boost::shared_ptr<Effect> effect);
    /// Removes the effect and every material that names its ID.
    void removeEffect(boost::shared_ptr<Effect> effect);
    boost::shared_ptr<Effect> getEffectByID(std::string id) const;
    boost::shared_ptr<Effect> getEffectByFilename(std::string fileName) const;
    std::vector<boost::shared_ptr<Effect>> getEffectLibrary() const { return effectLibrary_; }
    void setEffectLibrary(std::vector<boost::shared_ptr<Effect>> effects);
    /// "EffectLibrary: (effectID, filename)", then a line "ID, file name" per effect.
    std::string effectLibraryToString() const;
    /// @}

    /// @name Materials
    /// Adding one and replacing the list send "SceneUpdate" ("MaterialList").
    /// @{
    void addMaterial(boost::shared_ptr<Material> material);
    boost::shared_ptr<Material> getMaterialWithID(std::string id) const;
    std::vector<boost::shared_ptr<Material>> getMaterialList() const { return materialList_; }
    void setMaterialList(std::vector<boost::shared_ptr<Material>> materials);
    /// Material::toString of every material, each followed by an empty line.
    std::string materialLibraryToString() const;
    /// @}

    /// @name Animations
    /// @{
    void addAnimation(boost::shared_ptr<Animation> animation);
    /// A position outside the library changes nothing.
    void removeAnimation(unsigned int index);
    void removeAllAnimations();
    std::vector<boost::shared_ptr<Animation>> getAnimationsLibrary() const {
        return animationsLibrary_;
    }
    void setAnimationsLibrary(std::vector<boost::shared_ptr<Animation>> animations);
    /// @}

    /// @name Controllers
    /// Skins and morphs; what moves the scene in real time is a scene controller, see above.
    /// @{
    void addController(boost::shared_ptr<Controller> controller);
    boost::shared_ptr<Controller> getControllerById(std::string id) const;
    std::vector<boost::shared_ptr<Controller>> getControllersLibrary() const {
        return controllersLibrary_;
    }
    void setControllersLibrary(std::vector<boost::shared_ptr<Controller>> controllers);
    /// @}

    /// @name Evaluators
    /// @{
    void addEvaluator(boost::shared_ptr<Evaluator> evaluator);
    void removeEvaluator(boost::shared_ptr<Evaluator> evaluator);
    unsigned int getEvaluatorsCount() const;
    boost::shared_ptr<Evaluator> getEvaluatorAt(unsigned int index) const;
    /// @}

    /// @name Cameras
    /// @{
    /// Makes a camera named "VTCamera" with a generated ID, and an instance of it at the node
    /// @p nodeId, which is made when there is none: with this ID, or a generated one when it is
    /// empty, below the node @p parentId or else the root. The node is turned so that the camera,
    /// which looks along its own -z with y up, has the scene's up axis up: by +90 degrees about x
    /// for Z_UP, by -90 degrees about z for X_UP. Sends "SceneNewCamera" (SID of the instance).
    /// @returns the camera's ID.
    std::string createNewCamera(Camera::Type type, std::string nodeId, std::string parentId);
    /// Appends @p camera to the library unless its ID is taken; records the ID.
    bool addCamera(boost::shared_ptr<Camera> camera);
    unsigned int getCameraCount() const;
    boost::shared_ptr<Camera> getCameraAt(unsigned int index) const;
    boost::shared_ptr<Camera> getCameraByID(std::string id) const;

    void addCameraInstance(boost::shared_ptr<CameraInstance> instance);
    unsigned int getCameraInstanceCount() const;
    boost::shared_ptr<CameraInstance> getCameraInstanceAt(unsigned int index) const;
    boost::shared_ptr<CameraInstance> getCameraInstanceBySID(std::string sid) const;
    /// @}

    /// @name Lights
    /// @{
    /// Makes a light and places it on the node @p nodeId, which is made as by createNewCamera and
    /// gets the light's ID as its name. An ID that is taken is logged, and nothing is made.
    void createNewLight(Light::LightType type, std::string lightId, std::string nodeId,
                        std::string parentId);
    /// Appends @p light unless its ID is taken; records the ID.
    bool addLight(boost::shared_ptr<Light> light);
    boost::shared_ptr<Light> getLightByID(std::string id) const;
    std::vector<boost::shared_ptr<Light>> getLightLibrary() const { return lightLibrary_; }
    /// @}

    /// @name Merging
    /// Items of the other scene whose identifier is taken here are discarded or renamed; the maps
    /// lead from the identifiers of those that were renamed to their new ones. What the other scene
    /// and this one hold when a step begins is what it works on, so that a scene may be merged into
    /// itself; whether an identifier is taken is asked at the moment, of all that then stands here.
    /// No lock is taken. Handlers may edit both scenes. Empty pointers in lists are left out.
    /// @{
    /// Merges geometries, images, effects, materials and layers, then copies the tree of @p other,
    /// its root included, under the node @p parentNodeID, or under the root if there is none.
    /// @p options is a sum of: 0x01 discard repeated geometries; 0x02 discard repeated materials
    /// of the same effect; 0x04 discard repeated images; 0x08 discard repeated layers; 0x10 discard
    /// nodes with a repeated ID along with all below them; 0x20 merge the children of a node whose
    /// ID a child of its parent-to-be carries into that child, which stays as it is. What is not
    /// discarded or merged is renamed.
    /// Of a node come ID, name, translation, rotation, scale, layers and geometry instances; the
    /// nodes are read as they are when their turn comes. An instance whose geometry is not here is
    /// logged and left out.
    /// Sends what the copied nodes send, and at the end "SceneUpdate", "SceneUpdate"
    /// ("MaterialList") and "SyncScene".
    /// If memory runs out, what was taken in until then stays.
    /// @returns true. An empty @p other changes and sends nothing.
    bool mergeSceneManager(boost::shared_ptr<SceneManager> other, int options,
                           std::string parentNodeID);

    /// Appends copies. A repeated ID is discarded when the file names are equal, otherwise it gets
    /// the suffix "__renamed_" + generateID() + "__".
    std::map<std::string, std::string> mergeEffectLibrary(
        std::vector<boost::shared_ptr<Effect>> effects);

    /// Appends copies. A repeated ID is discarded if @p discardRepeated, otherwise it gets the
    /// suffix "__renamed__". Deliberate: file names play no part.
    std::map<std::string, std::string> mergeImageLibrary(
        std::vector<boost::shared_ptr<Image>> images, bool discardRepeated);

    /// Appends copies whose effects and textures are translated by the maps. A repeated ID is
    /// discarded if @p compareEffects and the effects are the same, otherwise it gets the suffix
    /// "__renamed_" + generateID() + "__". Sends "SceneUpdate" ("MaterialList").
    /// Deliberate: the copies share their parameters, so that a translated texture changes in the
    /// scene that the material came from, too.
    std::map<std::string, std::string> mergeMaterialLibrary(
        std::vector<boost::shared_ptr<Material>> materials,
        std::map<std::string, std::string> effectMap, std::map<std::string, std::string> imageMap,
        bool compareEffects);

    /// Copies the values of the vertex streams of @p other, of the same semantic and count, into
    /// those of the mesh at the same place in the geometry library. Ends at the first geometries of
    /// different type; does nothing when the libraries differ in length. Nothing is sent.
    void replaceSharedStreams(boost::shared_ptr<SceneManager> other);
    /// @}

    /// @name Skinned characters
    /// Joints are nodes of type "JOINT", listed depth first.
    /// @{
    /// Blends this scene with one of the same structure: @p ratio 1 keeps what is here, 0 takes
    /// what is there. Joints that both scenes hold as many of are placed, by replaceJoints, at the
    /// blend of their world positions and those of their namesakes by ID; then the positions of
    /// meshes at the same place in the geometry libraries are blended where their counts agree,
    /// as far as both streams have values.
    /// Sends "DisplayMessageAt", and changes nothing, for a ratio outside [0, 1], also NaN, and for
    /// libraries of different length or with different types of geometry. Joints are handed to
    /// replaceJoints in a scene of their own, which shares the event manager and sends
    /// "SceneUpdate" ("MaterialList") when it is made.
    /// If memory runs out, the joints and meshes that were blended until then stay so.
    void morph(boost::shared_ptr<SceneManager> other, float ratio);

    /// Puts every joint where the positions of the one mesh of @p jointsScene, three floats each,
    /// say, in world space, and lets the one skin of this scene be bound to that pose.
    /// A joint keeps its rotation and scale; its translation becomes the one, relative to its
    /// parent, that leads to the position. Below a parent of singular matrix it leads to the
    /// nearest position that can be reached; below one that is not finite it stays.
    /// The inverse bind matrix of each joint that the "JOINT" stream names by its ID becomes the
    /// inverse of the joint's new world matrix, or the pseudo-inverse of a singular one; entries
    /// past the end of the stream, and those of joints whose matrix is not finite, stay. The bind
    /// shape matrix becomes the identity.
    /// Logs, and changes nothing, unless there is one mesh with one position mapping, whose count
    /// is that of the joints, and one controller with a skin.
    /// If memory runs out, the joints that were placed until then stay there.
    void replaceJoints(boost::shared_ptr<SceneManager> jointsScene);
    /// @}

    /// @name Physics description
    /// @{
    boost::shared_ptr<PhysicsMaterial> getPhysicsMaterialById(std::string id) const;
    const std::vector<boost::shared_ptr<PhysicsMaterial>>& getPhysicsMaterialLibrary() const {
        return physicsMaterialLibrary_;
    }
    void setPhysicsMaterialLibrary(std::vector<boost::shared_ptr<PhysicsMaterial>> materials);

    boost::shared_ptr<PhysicsModel> getPhysicsModelById(std::string id) const;
    const std::vector<boost::shared_ptr<PhysicsModel>>& getPhysicsModelLibrary() const {
        return physicsModelLibrary_;
    }
    void setPhysicsModelLibrary(std::vector<boost::shared_ptr<PhysicsModel>> models);

    boost::shared_ptr<PhysicsScene> getPhysicsSceneById(std::string id) const;
    const std::vector<boost::shared_ptr<PhysicsScene>>& getPhysicsSceneLibrary() const {
        return physicsSceneLibrary_;
    }
    void setPhysicsSceneLibrary(std::vector<boost::shared_ptr<PhysicsScene>> scenes);

    const std::vector<boost::shared_ptr<PhysicsScene>>& getInstancedPhysicsScenes() const {
        return instancedPhysicsScenes_;
    }
    void setInstancedPhysicsScenes(std::vector<boost::shared_ptr<PhysicsScene>> scenes);
    /// @}

protected:
    /// Body of the synchronisation thread. It works on the state that thread and scene share, so
    /// that the scene may go while the thread is in a cycle.
    static void threadMain(boost::shared_ptr<SceneSync> sync);

    /// Appends the joints at and below @p node, which may be empty, to @p joints, parents first,
    /// and for each to @p parents where its parent stands in @p joints, -1 unless that is a joint.
    void transverseSceneForJoints(boost::shared_ptr<Node> node,
                                  std::vector<boost::shared_ptr<Node>>& joints,
                                  std::vector<int>& parents) const;

    /// Subscribes to "L_NewEffect", "L_NewMaterial", "L_MaterialParameterUpdated" and
    /// "L_MaterialTechniqueChanged". Events with empty values that they need are ignored.
    void registerEventHandlers();
    void localNewEffectHandler(core::event::Event event);
    void localNewMaterialHandler(core::event::Event event);
    void localMaterialParameterUpdatedHandler(core::event::Event event);
    void localMaterialTechniqueChangedHandler(core::event::Event event);

private:
    friend class ChildIndex;
    friend class MaterialIndex;
    friend class Node;
    friend class TargetedNodes;
    friend class SceneMerge;
    struct HandlerGate;
    using LocalHandler = void (SceneManager::*)(core::event::Event);

    void registerLocalHandler(const char* type, LocalHandler handler);
    void send(const core::event::EventType& type, const std::string& payload);
    void makeDefaults();
    std::vector<float> blendJointPositions(const SceneManager& other, float ratio) const;
    void addMerged(const std::vector<boost::shared_ptr<Material>>& materials);
    std::string renamedID(const std::string& id);
    std::string textureImageID(const std::string& fileName);
    boost::shared_ptr<Node> makeNode(const std::string& nodeId, const std::string& parentId);
    void turnToUpAxis(Node& node) const;

    core::logger::Logger logger_;
    std::unique_ptr<SceneLife> life_;
    std::unique_ptr<SceneIdentifiers> identifiers_;
    std::unique_ptr<NodeIndex> nodeIndex_;
    boost::shared_ptr<SceneSync> sync_;
    boost::shared_ptr<HandlerGate> handlerGate_;

    boost::shared_ptr<LayerManager> layerManager_;
    boost::shared_ptr<GeometryManager> geometryManager_;
    boost::shared_ptr<AnimationManager> animationManager_;
    boost::shared_ptr<Node> root_;

    float meterUnit_ = 1.0f;
    UpAxis upAxis_ = Y_UP;
    std::string sceneName_ = "DefaultScene";
    std::string sceneID_ = "defaultSceneID";
    boost::shared_ptr<Image> surrounding_;

    std::vector<boost::shared_ptr<Image>> imageLibrary_;
    std::vector<boost::shared_ptr<Effect>> effectLibrary_;
    std::vector<boost::shared_ptr<Material>> materialList_;
    std::uint64_t materialListRewrites_ = 0;  ///< Changes of the list other than additions.
    std::vector<boost::shared_ptr<Evaluator>> evaluators_;
    std::vector<boost::shared_ptr<Camera>> cameraLibrary_;
    std::vector<boost::shared_ptr<CameraInstance>> cameraInstances_;
    std::vector<boost::shared_ptr<Light>> lightLibrary_;
    std::vector<boost::shared_ptr<Animation>> animationsLibrary_;
    std::vector<boost::shared_ptr<Controller>> controllersLibrary_;
    std::vector<boost::shared_ptr<PhysicsMaterial>> physicsMaterialLibrary_;
    std::vector<boost::shared_ptr<PhysicsModel>> physicsModelLibrary_;
    std::vector<boost::shared_ptr<PhysicsScene>> physicsSceneLibrary_;
    std::vector<boost::shared_ptr<PhysicsScene>> instancedPhysicsScenes_;
};

}  // namespace vantorix::scene
