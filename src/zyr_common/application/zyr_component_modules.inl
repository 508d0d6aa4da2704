// The component modules that the application data knows, in the order of its members. The includer defines
//
//     ZYR_COMPONENT_MODULE(member, function, label, word, isReset)
//         member     m_<member>State and m_<member>Initializer
//         function   what brings the module up
//         label      how that function's line calls the module
//         word       the module's word in dependency lists
//         isReset    whether ApplicationData::deinitialize() forgets it; the three that it keeps are relied upon
//     ZYR_RETRIED_COMPONENT_MODULE(...)    the same for the one whose function differs; as above unless it is defined
//
// and both are undefined behind the list.

#ifndef ZYR_RETRIED_COMPONENT_MODULE
#define ZYR_RETRIED_COMPONENT_MODULE ZYR_COMPONENT_MODULE
#endif

ZYR_COMPONENT_MODULE(core, coreInitialize, "module:core", "core", 1)
ZYR_COMPONENT_MODULE(geometry, geometryInitialize, "module:geometry", "geometry", 1)
ZYR_COMPONENT_MODULE(picture, pictureInitialize, "module:picture", "picture", 1)
ZYR_COMPONENT_MODULE(sample, sampleInitialize, "module:sample", "sample", 1)
ZYR_COMPONENT_MODULE(system, systemInitialize, "module:system", "system", 1)
ZYR_COMPONENT_MODULE(project, projectInitialize, "module:project", "project", 1)
ZYR_COMPONENT_MODULE(engine, engineInitialize, "module:engine", "engine", 1)
ZYR_COMPONENT_MODULE(audio, audioInitialize, "module:audio", "audio", 0)
ZYR_COMPONENT_MODULE(graphics, graphicsInitialize, "module:graphics", "graphics", 1)
ZYR_COMPONENT_MODULE(physics, physicsInitialize, "module:physics", "physics", 1)
ZYR_COMPONENT_MODULE(cairo, libCairoInitialize, "lib module:cairo", "cairo", 1)
ZYR_RETRIED_COMPONENT_MODULE(d3d11, libD3D11Initialize, "lib module:D3D11", "d3d11", 1)
ZYR_COMPONENT_MODULE(vulkan, libVulkanInitialize, "lib module:vulkan", "vulkan", 1)
ZYR_COMPONENT_MODULE(openGL, libOpenGLInitialize, "lib module:OpenGL", "opengl", 1)
ZYR_COMPONENT_MODULE(shaderc, libShadercInitialize, "lib module:Shaderc", "shaderc", 1)
ZYR_COMPONENT_MODULE(openAL, libOpenALInitialize, "lib module:OpenAL", "openal", 1)
ZYR_COMPONENT_MODULE(oggVorbis, libOggVorbisInitialize, "lib module:OggVorbis", "oggvorbis", 1)
ZYR_COMPONENT_MODULE(openSSL, libOpenSSLInitialize, "lib module:OpenSSL", "openssl", 1)
ZYR_COMPONENT_MODULE(gui, guiInitialize, "module:gui", "gui", 1)
ZYR_COMPONENT_MODULE(language, languageInitialize, "module:language", "language", 0)
ZYR_COMPONENT_MODULE(remote, remoteInitialize, "module:remote", "remote", 0)

#undef ZYR_COMPONENT_MODULE
#undef ZYR_RETRIED_COMPONENT_MODULE
